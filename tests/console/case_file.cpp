#include "console/case_file.h"

#include "base/text.h"

namespace tessaran::test {

CaseFile parseCase(std::string_view text) {
    constexpr std::string_view kMark = "=== ";
    CaseFile out;
    std::string ignored;
    std::string* part = &ignored;
    std::vector<std::string> lines = base::split(text, '\n');
    if (!lines.empty() && lines.back().empty())
        lines.pop_back();
    for (const std::string& line : lines) {
        if (!line.starts_with(kMark)) {
            *part += line + "\n";
            continue;
        }
        const std::string head = line.substr(kMark.size());
        if (head.starts_with("given "))
            part = &out.given[head.substr(6)];
        else if (head.starts_with("file "))
            part = &out.files[head.substr(5)];
        else if (head.starts_with("no file "))
            out.absent.push_back(head.substr(8));
        else if (head.starts_with("status "))
            out.status = std::stoi(head.substr(7));
        else
            part = head == "script" ? &out.script : head == "error" ? &out.error : &out.transcript;
    }
    return out;
}

} // namespace tessaran::test
