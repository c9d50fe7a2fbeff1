#pragma once

// Between the system's UTF-8 texts and Qt's.

#include <QString>
#include <string>
#include <string_view>

namespace tessaran::desktop {

inline QString qt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string utf8(const QString& text) {
    return text.toStdString();
}

} // namespace tessaran::desktop
