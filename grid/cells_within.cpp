#include "grid/cells_within.h"

namespace tessaran::grid {

ReachingSegments::ReachingSegments(const ReachingCurve& curve, const GridFrame& frame)
    : segments(segmentsOf(*curve.curve, frame)), reach(curve.reach),
      search(std::max(curve.reach, base::kTolerance)) {
    for (const NearSegment& segment : segments)
        extents.add(segment.extents());
    if (!extents.empty())
        extents = extents.enlarged(search);
}

ReachBand::ReachBand(const GridFrame& frame, int rowFrom, int rowTo)
    : frame_(frame), from_(rowFrom), to_(rowTo),
      nearest_(static_cast<std::size_t>(rowTo - rowFrom) * static_cast<std::size_t>(frame.nX()),
               kFar) {}

} // namespace tessaran::grid
