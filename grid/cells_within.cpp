#include "grid/cells_within.h"

namespace tessaran::grid {
namespace {

constexpr double kVisitsBetweenPolls = 5e7; // of cells by segments

// At most so many times a cell is asked for its distance to a segment of the curve.
double visitsOf(const ReachingSegments& curve, const GridFrame& frame) {
    if (curve.extents.empty())
        return 0.0;
    const GridFrame::Range columns = frame.columns(curve.extents.low.x, curve.extents.high.x);
    const GridFrame::Range rows = frame.rows(curve.extents.low.y, curve.extents.high.y);
    return static_cast<double>(curve.segments.size()) * std::max(0, columns.to - columns.from) *
           std::max(0, rows.to - rows.from);
}

} // namespace

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

std::size_t endOfBatch(std::span<const ReachingSegments> curves, std::size_t first,
                       const GridFrame& frame) {
    double visits = 0.0;
    std::size_t end = first;
    while (end < curves.size() && visits < kVisitsBetweenPolls)
        visits += visitsOf(curves[end++], frame);
    return end;
}

} // namespace tessaran::grid
