// The floors of the house, held against the #include lines: every folder may include itself and
// what stands below it, and Qt is known to the window alone.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

const fs::path kSource = TESSARAN_SOURCE_DIR;

// What each folder may include besides itself.
const std::map<std::string, Names>& allowed() {
    static const Names below{"grid", "host", "geometry", "base"};
    static const Names features{"factors", "index", "stress", "rfri", "cmrr"};
    static const auto with = [](Names a, const Names& b) {
        a.insert(b.begin(), b.end());
        return a;
    };
    static const std::map<std::string, Names> table{
        {"base", {}},
        {"geometry", {"base"}},
        {"host", {"geometry", "base"}},
        {"drawing", {"host", "geometry", "base"}},
        {"grid", {"host", "geometry", "base"}},
        {"factors", below},
        {"index", below},
        {"stress", below},
        {"rfri", below},
        {"cmrr", below},
        {"app", with(below, features)},
        {"console", with(with(below, features), {"app", "drawing"})},
        {"desktop", with(with(below, features), {"app", "drawing", "console"})},
        {"cli", with(with(below, features), {"app", "drawing", "console", "desktop"})},
    };
    return table;
}

struct Include {
    std::string file; // relative to the source folder
    int line = 0;
    std::string target;
};

// What an include line names; nothing for other lines.
std::string includedBy(const std::string& line) {
    const std::size_t hash = line.find_first_not_of(" \t");
    if (hash == std::string::npos || line[hash] != '#')
        return {};
    const std::size_t word = line.find_first_not_of(" \t", hash + 1);
    if (word == std::string::npos || line.compare(word, 7, "include") != 0)
        return {};
    const std::size_t open = line.find_first_of("<\"", word);
    const std::size_t close = line.find_first_of(">\"", open + 1);
    if (open == std::string::npos || close == std::string::npos)
        return {};
    return line.substr(open + 1, close - open - 1);
}

std::vector<Include> includesOf(const fs::path& file) {
    std::vector<Include> out;
    std::ifstream in(file);
    std::string text;
    for (int line = 1; std::getline(in, text); ++line) {
        if (const std::string name = includedBy(text); !name.empty())
            out.push_back({fs::relative(file, kSource).string(), line, name});
    }
    return out;
}

std::vector<Include> includesIn(const std::string& folder) {
    std::vector<Include> out;
    if (!fs::exists(kSource / folder))
        return out;
    for (const auto& file : fs::recursive_directory_iterator(kSource / folder)) {
        if (file.path().extension() != ".h" && file.path().extension() != ".cpp")
            continue;
        const std::vector<Include> here = includesOf(file.path());
        out.insert(out.end(), here.begin(), here.end());
    }
    return out;
}

std::string firstPart(const std::string& target) {
    return target.substr(0, target.find('/'));
}

bool isQt(const std::string& target) {
    return target.starts_with("Qt") || (target.size() > 1 && target[0] == 'Q' &&
                                        std::isupper(static_cast<unsigned char>(target[1])) != 0);
}

std::string place(const Include& include) {
    return include.file + ":" + std::to_string(include.line) + " includes " + include.target;
}

TEST(Architecture, IncludesPointDownward) {
    int seen = 0;
    for (const auto& [folder, below] : allowed()) {
        for (const Include& include : includesIn(folder)) {
            const std::string target = firstPart(include.target);
            if (!allowed().contains(target) || include.target.find('/') == std::string::npos)
                continue;
            ++seen;
            EXPECT_TRUE(target == folder || below.contains(target)) << place(include);
        }
    }
    EXPECT_GT(seen, 100);
}

TEST(Architecture, OnlyTheWindowKnowsQt) {
    for (const auto& [folder, below] : allowed()) {
        if (folder == "desktop" || folder == "cli")
            continue;
        for (const Include& include : includesIn(folder))
            EXPECT_FALSE(isQt(include.target)) << place(include);
    }
}

TEST(Architecture, OnlyTheEntryPointIsCalledFromAbove) {
    // The program starts the module as the CAD host would: by messages.
    const Names door{"app/entry_point.h", "app/messages.h"};
    for (const char* folder : {"console", "desktop", "cli"}) {
        for (const Include& include : includesIn(folder)) {
            const bool known = firstPart(include.target) != "app" || door.contains(include.target);
            EXPECT_TRUE(known) << place(include);
        }
    }
}

TEST(Architecture, FoldersOfTheTableAreThoseOfTheHouse) {
    for (const auto& entry : fs::directory_iterator(kSource)) {
        const std::string name = entry.path().filename().string();
        const bool ours = entry.is_directory() && name[0] != '.' &&
                          !Names{"build",   "out",      "tests",    "bench",     "cmake", "docs",
                                 "scripts", "examples", "licenses", "packaging", "debian"}
                               .contains(name);
        EXPECT_TRUE(!ours || allowed().contains(name)) << name;
    }
}

} // namespace
