#pragma once

// Planar regions as the solid modeller's text records ("SAT"), the form in which REGION entities
// hold them up to release 2012 (AC1024). Read: planar faces parallel to world XY bounded by
// straight lines, circular and elliptic arcs. Written: version 700, which every release from 2000
// on takes.
//
// A region is a body of lumps, one for each connected face. A face lies on a plane and is bounded
// by loops; a loop is a ring of coedges; a coedge uses an edge in one of its two directions; an
// edge is a piece of a curve between two vertices.

#include "base/result.h"
#include "host/entity.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::drawing::acis {

// The lines are as they stand in a drawing file: every printable character c is 159 - c, blanks
// stay, and the caret that stands for 'A' is followed by a blank.
std::string deciphered(std::string_view line);
std::string ciphered(std::string_view line);

// Lines in the clear.
base::Result<host::Region> readRegion(std::span<const std::string> lines);
std::vector<std::string> writeRegion(const host::Region& region);

} // namespace tessaran::drawing::acis
