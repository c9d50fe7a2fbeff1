#include "console/variables.h"

#include "base/text.h"
#include "drawing/coordinates.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace tessaran::console {
namespace {

using host::Point2;
using host::Point3;
using host::VariableValue;

std::string capitals(std::string_view name) {
    std::string out(base::trimmed(name));
    for (char& c : out)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return out;
}

// The folder with its trailing separator; of a drawing without a file, the current one.
std::string folderOf(const std::filesystem::path& path) {
    std::error_code ignored;
    const std::filesystem::path file = std::filesystem::absolute(path, ignored);
    const std::filesystem::path folder =
        path.empty() ? std::filesystem::current_path(ignored) : file.parent_path();
    return (folder / "").string();
}

std::string nameOf(const Document& document) {
    const std::filesystem::path& path = document.database->path();
    return path.empty() ? document.name + ".dxf" : path.filename().string();
}

// The value as one of the kind that the variable has; nothing when it is none.
std::optional<VariableValue> converted(const VariableValue& value, const VariableValue& like) {
    if (value.index() == like.index())
        return value;
    if (std::holds_alternative<double>(like))
        if (const int* whole = std::get_if<int>(&value))
            return VariableValue(static_cast<double>(*whole));
    if (std::holds_alternative<int>(like))
        if (const double* number = std::get_if<double>(&value);
            number != nullptr && *number == std::floor(*number) && std::abs(*number) < 2e9)
            return VariableValue(static_cast<int>(*number));
    if (std::holds_alternative<Point3>(like))
        if (const Point2* plan = std::get_if<Point2>(&value))
            return VariableValue(Point3{plan->x, plan->y, 0.0});
    if (std::holds_alternative<Point2>(like))
        if (const Point3* point = std::get_if<Point3>(&value))
            return VariableValue(point->plan());
    return std::nullopt;
}

const std::vector<std::string>& derivedNames() {
    static const std::vector<std::string> names = {
        "CLAYER",    "DBMOD",  "DWGNAME", "DWGPREFIX", "DWGTITLED",  "EXTMAX",  "EXTMIN",
        "LASTPOINT", "UCSORG", "UCSXDIR", "UCSYDIR",   "SCREENSIZE", "VIEWCTR", "VIEWSIZE"};
    return names;
}

base::Error readOnly(const std::string& name) {
    return base::stateError(fmt::format("{} is read-only.", name));
}

} // namespace

Variables::Variables(Workspace& workspace)
    : workspace_(workspace), own_{{"CMDECHO", 1},    {"FILEDIA", 1},
                                  {"LUPREC", 4},     {"AUPREC", 0},
                                  {"LUNITS", 2},     {"OSMODE", 0},
                                  {"TEXTSIZE", 2.5}, {"PDMODE", 0},
                                  {"PDSIZE", 0.0},   {"HPNAME", std::string("SOLID")}} {}

std::optional<VariableValue> Variables::derived(const std::string& name) const {
    const Document& document = workspace_.current();
    const drawing::Database& database = *document.database;
    const drawing::View view = database.view();
    if (name == "CLAYER")
        return database.currentLayer();
    if (name == "DBMOD")
        return database.modified() ? 1 : 0;
    if (name == "DWGNAME")
        return nameOf(document);
    if (name == "DWGPREFIX")
        return folderOf(database.path());
    if (name == "DWGTITLED") // whether the drawing has a file
        return database.path().empty() ? 0 : 1;
    if (name == "LASTPOINT")
        return document.lastPoint;
    if (name == "SCREENSIZE")
        return Point2{static_cast<double>(view.widthPixels),
                      static_cast<double>(view.heightPixels)};
    if (name == "VIEWSIZE")
        return view.height;
    if (name == "VIEWCTR")
        return drawing::toUser(database.ucs(), {view.centre.x, view.centre.y, 0.0});
    if (name == "UCSORG")
        return database.ucs().origin;
    if (name == "UCSXDIR")
        return database.ucs().xAxis;
    if (name == "UCSYDIR")
        return database.ucs().yAxis;
    const host::Box2 box = database.extents();
    if (name == "EXTMIN" && !box.empty())
        return box.low;
    if (name == "EXTMAX" && !box.empty())
        return box.high;
    return std::nullopt;
}

std::optional<VariableValue> Variables::get(std::string_view name) const {
    const std::string key = capitals(name);
    if (std::find(derivedNames().begin(), derivedNames().end(), key) != derivedNames().end())
        return derived(key);
    const auto& ofDrawing = workspace_.current().database->tables().variables;
    if (const auto found = ofDrawing.find(key); found != ofDrawing.end())
        return found->second;
    const auto found = own_.find(key);
    return found == own_.end() ? std::nullopt : std::optional(found->second);
}

base::Result<void> Variables::setDerived(const std::string& name, const VariableValue& value) {
    drawing::Database& database = workspace_.database();
    if (name == "CLAYER")
        return database.setCurrentLayer(std::get<std::string>(value));
    if (name == "LASTPOINT") {
        workspace_.current().lastPoint = std::get<Point3>(value);
        return {};
    }
    return readOnly(name);
}

base::Result<void> Variables::set(std::string_view name, const VariableValue& value) {
    const std::string key = capitals(name);
    const auto present = get(key);
    if (!present)
        return base::stateError(fmt::format("Unknown variable name \"{}\".", base::trimmed(name)));
    const auto fitting = converted(value, *present);
    if (!fitting)
        return base::formatError(fmt::format("{} takes another kind of value.", key));
    if (std::find(derivedNames().begin(), derivedNames().end(), key) != derivedNames().end())
        return setDerived(key, *fitting);
    drawing::Database& database = workspace_.database();
    if (database.tables().variables.count(key) != 0)
        return database.setVariable(key, *fitting);
    own_[key] = *fitting;
    return {};
}

std::vector<std::string> Variables::names() const {
    std::vector<std::string> out = derivedNames();
    for (const auto& [name, value] : own_)
        out.push_back(name);
    for (const auto& [name, value] : workspace_.current().database->tables().variables)
        out.push_back(name);
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
    return out;
}

} // namespace tessaran::console
