#pragma once

// A new drawing of release 2000 (AC1015) with everything that other programs insist on: tables,
// blocks and layouts of model and paper space, dictionaries.

#include <cstdint>
#include <string>

namespace tessaran::drawing::dxf {

// Its text, with `shift` added to every handle.
std::string templateDrawing(std::uint64_t shift);

} // namespace tessaran::drawing::dxf
