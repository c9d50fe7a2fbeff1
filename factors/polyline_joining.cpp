#include "factors/polyline_joining.h"

#include "geometry/box_index.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace tessaran::factors {
namespace {

using geometry::Box2;
using host::Point3;
using host::Polyline;
using host::Polyline3d;

constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
// Of an end's possible partners so many are looked at in one round; rounds go on while ends are
// joined. Keeps the memory small where very many ends lie at nearly one place.
constexpr std::size_t kPartnersOfARound = 8;

// End 2 k is the start of polyline k, end 2 k + 1 its end.
class EndJoiner {
  public:
    EndJoiner(std::span<const PolylineEnds> polylines, double tolerance)
        : polylines_(polylines), tolerance_(tolerance), partner_(2 * polylines.size(), kNone) {}

    std::vector<std::size_t> partners() {
        joinEqualPlaces();
        while (joinNearPlaces()) {
        }
        return partner_;
    }

  private:
    struct Pair {
        double distance = 0.0;
        std::size_t a = 0;
        std::size_t b = 0;

        friend bool operator<(const Pair& p, const Pair& q) {
            return std::tie(p.distance, p.a, p.b) < std::tie(q.distance, q.a, q.b);
        }
    };

    Point3 at(std::size_t end) const {
        return end % 2 == 0 ? polylines_[end / 2].start : polylines_[end / 2].end;
    }
    bool free(std::size_t end) const { return partner_[end] == kNone; }
    bool fit(std::size_t a, std::size_t b) const {
        return a != b && (a / 2 != b / 2 || polylines_[a / 2].mayCloseItself);
    }
    void join(std::size_t a, std::size_t b) {
        partner_[a] = b;
        partner_[b] = a;
    }
    double apart(std::size_t a, std::size_t b) const {
        const Point3 d = at(b) - at(a);
        return std::hypot(d.x, d.y, d.z);
    }

    // Ends at exactly one place, in pairs by their numbers.
    void joinEqualPlaces() {
        std::vector<std::size_t> ends(partner_.size());
        for (std::size_t e = 0; e < ends.size(); ++e)
            ends[e] = e;
        const auto key = [this](std::size_t e) {
            const Point3 p = at(e);
            return std::tuple(p.x, p.y, p.z, e);
        };
        std::sort(ends.begin(), ends.end(),
                  [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
        for (std::size_t from = 0; from < ends.size();) {
            std::size_t to = from + 1;
            while (to < ends.size() && at(ends[to]) == at(ends[from]))
                ++to;
            joinInPairs(std::span(ends).subspan(from, to - from));
            from = to;
        }
    }

    // An end waits for the next one that fits; of a polyline's own two ends that may not meet, only
    // one can be waiting.
    void joinInPairs(std::span<const std::size_t> ends) {
        std::vector<std::size_t> waiting;
        for (const std::size_t e : ends) {
            const auto other = std::find_if(waiting.begin(), waiting.end(),
                                            [&](std::size_t w) { return fit(w, e); });
            if (other == waiting.end()) {
                waiting.push_back(e);
                continue;
            }
            join(*other, e);
            waiting.erase(other);
        }
    }

    std::vector<std::size_t> freeEnds() const {
        std::vector<std::size_t> ends;
        for (std::size_t e = 0; e < partner_.size(); ++e)
            if (free(e))
                ends.push_back(e);
        return ends;
    }

    // The nearest free ends of each free end.
    std::vector<Pair> nearPairs(const std::vector<std::size_t>& ends) const {
        std::vector<Box2> boxes;
        for (const std::size_t e : ends) {
            Box2 box;
            box.add(at(e).plan());
            boxes.push_back(box);
        }
        const geometry::BoxIndex index(boxes);
        std::vector<Pair> pairs;
        std::vector<Pair> near;
        for (std::size_t k = 0; k < ends.size(); ++k) {
            near.clear();
            index.forEach(boxes[k].enlarged(tolerance_), [&](std::size_t other) {
                const std::size_t a = std::min(ends[k], ends[other]);
                const std::size_t b = std::max(ends[k], ends[other]);
                const double distance = apart(a, b);
                if (fit(a, b) && distance <= tolerance_)
                    near.push_back({distance, a, b});
            });
            const std::size_t kept = std::min(near.size(), kPartnersOfARound);
            std::partial_sort(near.begin(), near.begin() + static_cast<std::ptrdiff_t>(kept),
                              near.end());
            pairs.insert(pairs.end(), near.begin(),
                         near.begin() + static_cast<std::ptrdiff_t>(kept));
        }
        return pairs;
    }

    bool joinNearPlaces() {
        std::vector<Pair> pairs = nearPairs(freeEnds());
        std::sort(pairs.begin(), pairs.end());
        bool any = false;
        for (const Pair& pair : pairs) {
            if (!free(pair.a) || !free(pair.b))
                continue;
            join(pair.a, pair.b);
            any = true;
        }
        return any;
    }

    std::span<const PolylineEnds> polylines_;
    double tolerance_;
    std::vector<std::size_t> partner_;
};

std::size_t otherEnd(std::size_t end) {
    return end ^ 1U;
}

// Back from the polyline's start to the end where its chain begins; around a ring to the polyline
// itself.
std::size_t chainStart(std::size_t polyline, const std::vector<std::size_t>& partner) {
    std::size_t end = 2 * polyline;
    while (partner[end] != kNone) {
        end = otherEnd(partner[end]);
        if (end / 2 == polyline)
            break;
    }
    return end;
}

JoinedChain chainFrom(std::size_t start, const std::vector<std::size_t>& partner,
                      std::vector<bool>& used) {
    JoinedChain chain;
    std::size_t entry = start;
    for (;;) {
        chain.links.push_back({entry / 2, entry % 2 == 1});
        used[entry / 2] = true;
        entry = partner[otherEnd(entry)];
        if (entry == kNone)
            return chain;
        if (entry == start) {
            chain.closed = true;
            return chain;
        }
    }
}

template <class Vertices>
bool makesARing(const Vertices& vertices, bool anyArc) {
    return vertices.size() >= 3 || (vertices.size() == 2 && anyArc);
}

bool sameConstantWidth(std::span<const Polyline> polylines, const JoinedChain& chain) {
    const double width = polylines[chain.links.front().polyline].constantWidth;
    return std::all_of(chain.links.begin(), chain.links.end(), [&](const ChainLink& link) {
        return polylines[link.polyline].constantWidth == width;
    });
}

bool hasArc(const VertexRun& run) {
    return std::any_of(run.begin(), run.end(),
                       [](const host::PolylineVertex& vertex) { return vertex.bulge != 0.0; });
}

} // namespace

std::vector<JoinedChain> joinedChains(std::span<const PolylineEnds> polylines, double tolerance) {
    const std::vector<std::size_t> partner = EndJoiner(polylines, tolerance).partners();
    std::vector<bool> used(polylines.size(), false);
    std::vector<JoinedChain> chains;
    for (std::size_t k = 0; k < polylines.size(); ++k) {
        if (used[k])
            continue;
        JoinedChain chain = chainFrom(chainStart(k, partner), partner, used);
        if (chain.links.size() > 1 || chain.closed)
            chains.push_back(std::move(chain));
    }
    return chains;
}

std::size_t firstMember(const JoinedChain& chain) {
    return std::min_element(chain.links.begin(), chain.links.end(),
                            [](ChainLink a, ChainLink b) { return a.polyline < b.polyline; })
        ->polyline;
}

Polyline joined(std::span<const Polyline> polylines, const JoinedChain& chain) {
    Polyline out = polylines[firstMember(chain)];
    const bool spellOut = !sameConstantWidth(polylines, chain);
    if (spellOut && out.form == Polyline::Form::light)
        out.constantWidth = 0.0;
    out.vertices.clear();
    for (const ChainLink link : chain.links) {
        Polyline part = polylines[link.polyline];
        if (!spellOut)
            part.constantWidth = 0.0; // said once for all
        VertexRun run = openRun(part);
        if (link.reversed)
            run = reversed(run);
        if (out.vertices.empty())
            out.vertices = std::move(run);
        else
            appendJoined(out.vertices, run);
    }
    VertexRun ring(out.vertices.begin(), out.vertices.end() - 1);
    out.closed = chain.closed && makesARing(ring, hasArc(ring));
    if (out.closed)
        out.vertices = std::move(ring);
    return out;
}

Polyline3d joined(std::span<const Polyline3d> polylines, const JoinedChain& chain) {
    Polyline3d out;
    for (const ChainLink link : chain.links) {
        std::vector<Point3> part = polylines[link.polyline].vertices;
        if (link.reversed)
            std::reverse(part.begin(), part.end());
        out.vertices.insert(out.vertices.end(), part.begin() + (out.vertices.empty() ? 0 : 1),
                            part.end());
    }
    out.closed = chain.closed && out.vertices.size() > 3;
    if (out.closed)
        out.vertices.pop_back();
    return out;
}

PolylineEnds endsOf(const Polyline& polyline) {
    PolylineEnds ends;
    if (polyline.vertices.empty())
        return ends;
    const auto raised = [&](host::Point2 p) { return Point3{p.x, p.y, polyline.elevation}; };
    ends.start = raised(polyline.vertices.front().at);
    ends.end = raised(polyline.vertices.back().at);
    const VertexRun ring(polyline.vertices.begin(), polyline.vertices.end() - 1);
    ends.mayCloseItself = makesARing(ring, hasArc(ring));
    return ends;
}

PolylineEnds endsOf(const Polyline3d& polyline) {
    if (polyline.vertices.empty())
        return {};
    return {polyline.vertices.front(), polyline.vertices.back(), polyline.vertices.size() > 3};
}

} // namespace tessaran::factors
