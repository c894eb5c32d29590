#include "runtime/ui/internal/QtText.h"

#include "runtime/text/TextEncoding.h"

namespace vx {

QString ToQString(const String& text) {
    const std::string_view bytes = text.bytes();
    const auto size = static_cast<qsizetype>(bytes.size());
    const TextEncoding* encoding = text.encoding();
    if (encoding == nullptr) {
        return QString::fromUtf8(bytes.data(), size);
    }
    switch (encoding->scheme()) {
        case TextEncoding::Scheme::ASCII:
        case TextEncoding::Scheme::Latin1:
            return QString::fromLatin1(bytes.data(), size);
        case TextEncoding::Scheme::UTF16: {
            QString result;
            result.reserve(size / 2);
            for (qsizetype i = 0; i + 1 < size; i += 2) {
                const auto high = static_cast<unsigned char>(bytes[i]);
                const auto low = static_cast<unsigned char>(bytes[i + 1]);
                result.append(QChar(static_cast<char16_t>(high << 8 | low)));
            }
            return result;
        }
        case TextEncoding::Scheme::UTF8:
            break;
    }
    return QString::fromUtf8(bytes.data(), size);
}

String FromQString(const QString& text) {
    QByteArray utf8 = text.toUtf8();
    return String(std::string(utf8.constData(), static_cast<std::size_t>(utf8.size())),
                  Encodings::UTF8);
}

}  // namespace vx
