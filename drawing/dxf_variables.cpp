#include "drawing/dxf_variables.h"

#include "drawing/overloaded.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tessaran::drawing::dxf {

std::string variableName(const HeaderVariable& variable) {
    std::string name(variable.name);
    if (name.starts_with('$'))
        name.erase(0, 1);
    std::ranges::transform(name, name.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return name;
}

std::optional<host::VariableValue> decodeVariable(const SourceFile& file,
                                                  const HeaderVariable& variable) {
    const TagValues values = file.values();
    if (variable.values.empty())
        return std::nullopt;
    const Tag& first = variable.values.front();
    switch (valueKind(first.code)) {
    case ValueKind::real: {
        std::array<double, 3> parts{};
        const std::size_t n = std::min<std::size_t>(3, variable.values.size());
        for (std::size_t i = 0; i < n; ++i) {
            const std::optional<double> value = values.real(variable.values[i]);
            if (!value || !std::isfinite(*value))
                return std::nullopt;
            parts[i] = *value;
        }
        if (n == 1)
            return parts[0];
        if (n == 2)
            return host::Point2{parts[0], parts[1]};
        return host::Point3{parts[0], parts[1], parts[2]};
    }
    case ValueKind::text:
        return file.texts.decoded(first.value);
    case ValueKind::chunk:
        return std::nullopt;
    default: {
        const std::optional<std::int64_t> value = values.integer(first);
        if (!value || std::abs(*value) > std::numeric_limits<int>::max())
            return std::nullopt;
        return static_cast<int>(*value);
    }
    }
}

Ucs decodeUcs(const SourceFile& file) {
    Ucs ucs;
    for (const HeaderVariable& variable : headerVariables(file)) {
        const std::string name = variableName(variable);
        host::Point3* const part = name == "UCSORG"    ? &ucs.origin
                                   : name == "UCSXDIR" ? &ucs.xAxis
                                   : name == "UCSYDIR" ? &ucs.yAxis
                                                       : nullptr;
        if (part == nullptr)
            continue;
        const std::optional<host::VariableValue> value = decodeVariable(file, variable);
        if (value && std::holds_alternative<host::Point3>(*value))
            *part = std::get<host::Point3>(*value);
    }
    return ucs;
}

bool isFreeVariable(std::string_view name) {
    static constexpr std::array<std::string_view, 13> kBound{
        "ACADVER", "ACADMAINTVER", "DWGCODEPAGE",    "HANDSEED", "HANDLING",
        "CLAYER",  "UCSORG",       "UCSXDIR",        "UCSYDIR",  "EXTMIN",
        "EXTMAX",  "VERSIONGUID",  "FINGERPRINTGUID"};
    return std::ranges::find(kBound, name) == kBound.end();
}

void writeVariable(TagWriter& writer, const SourceFile& file, const HeaderVariable& variable,
                   const host::VariableValue& value) {
    writer.text(9, variable.name);
    const int code = variable.values.front().code;
    const auto writeNumber = [&](double number) {
        if (valueKind(code) == ValueKind::real)
            writer.real(code, number);
        else if (valueKind(code) != ValueKind::text)
            writer.integer(code, static_cast<std::int64_t>(number));
    };
    std::visit(Overloaded{
                   [&](int number) { writeNumber(number); },
                   [&](double number) { writeNumber(number); },
                   [&](const std::string& text) { writer.text(code, file.texts.encoded(text)); },
                   [&](const host::Point2& p) {
                       writer.point(code, p.x, p.y);
                       if (variable.values.size() > 2)
                           writer.real(code + 20, 0.0);
                   },
                   [&](const host::Point3& p) {
                       writer.point(code, p.x, p.y);
                       if (variable.values.size() > 2)
                           writer.real(code + 20, p.z);
                   },
               },
               value);
}

} // namespace tessaran::drawing::dxf
