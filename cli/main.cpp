#include "cli/options.h"

int main(int argc, char** argv) {
    return tessaran::cli::main(argc, argv);
}
