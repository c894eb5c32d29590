#pragma once

#include "runtime/text/String.h"

namespace vx {

// The file types the application has made known to the toolkit, by name, so
// that a dialog's filter can name them.
void RuntimeRegisterFileType(const String& name, const String& macCreator, const String& macType,
                             const String& extensions, const String& uti);
void RuntimeDeregisterFileType(const String& name);
bool _IsFileTypeRegistered(const String& name);

// The name filters of a file dialog for a filter of the system: the names of
// registered types joined by ";", each giving "Name (*.ext ...)". A word that
// names no registered type stands for an extension of its own. Filters are
// separated by ";;", as the toolkit's dialogs take them.
String _DialogNameFilters(const String& filter);
// The extension (without the dot) that a save dialog adds to a bare name: the
// first concrete extension of the first type in the filter, or empty.
String _DialogDefaultSuffix(const String& filter);

}  // namespace vx
