#pragma once

// A script with all that it is to give, as one text file:
//
//     === given plan.txt          a file of the folder before the run
//     === script
//     === status 1
//     === error
//     === transcript
//     === file out.txt            a file of the folder after the run
//     === no file out.txt         one that must not be there

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::test {

struct CaseFile {
    std::map<std::string, std::string> given;
    std::string script;
    int status = 0;
    std::string error;
    std::string transcript;
    std::map<std::string, std::string> files;
    std::vector<std::string> absent;
};

CaseFile parseCase(std::string_view text);

} // namespace tessaran::test
