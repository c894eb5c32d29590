#include "runtime/ui/FileTypeRegistry.h"

#include <QRegularExpression>
#include <QStringList>
#include <map>

#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {

// Registered name -> its extensions, as the type gave them.
std::map<String, String>& Registered() {
    static std::map<String, String> types;
    return types;
}

// ".vxpk" -> "*.vxpk"; ".*" -> "*". Several extensions may be separated by
// ";", "," or blanks.
QStringList Patterns(const QString& extensions) {
    QStringList patterns;
    static const QRegularExpression separators("[;,\\s]+");
    for (QString extension : extensions.split(separators, Qt::SkipEmptyParts)) {
        if (extension.startsWith('.')) {
            extension.remove(0, 1);
        }
        patterns << (extension == "*" ? QStringLiteral("*") : "*." + extension);
    }
    return patterns;
}

// Each name of the filter with its patterns, in the filter's order.
std::vector<std::pair<QString, QStringList>> FilterEntries(const String& filter) {
    std::vector<std::pair<QString, QStringList>> entries;
    for (const QString& word : ToQString(filter).split(';', Qt::SkipEmptyParts)) {
        auto found = Registered().find(FromQString(word));
        if (found != Registered().end()) {
            entries.emplace_back(word, Patterns(ToQString(found->second)));
        } else {
            // A word that names no type is one extension, blanks and all.
            entries.emplace_back(word,
                                 QStringList{"*." + (word.startsWith('.') ? word.mid(1) : word)});
        }
    }
    return entries;
}

}  // namespace

void RuntimeRegisterFileType(const String& name, const String& /*macCreator*/,
                             const String& /*macType*/, const String& extensions,
                             const String& /*uti*/) {
    // The platform's creator and type codes and the type identifier name a
    // file on another desktop; here a type is known by its extensions.
    Registered()[name] = extensions;
}

void RuntimeDeregisterFileType(const String& name) {
    Registered().erase(name);
}

bool _IsFileTypeRegistered(const String& name) {
    return Registered().contains(name);
}

String _DialogNameFilters(const String& filter) {
    QStringList filters;
    for (const auto& [name, patterns] : FilterEntries(filter)) {
        filters << name + " (" + patterns.join(' ') + ")";
    }
    return FromQString(filters.join(";;"));
}

String _DialogDefaultSuffix(const String& filter) {
    for (const auto& [name, patterns] : FilterEntries(filter)) {
        for (const QString& pattern : patterns) {
            if (pattern.startsWith("*.") && !pattern.mid(1).contains(QLatin1Char(0x2a))) {
                return FromQString(pattern.mid(2));
            }
        }
        break;
    }
    return String();
}

}  // namespace vx
