#include "stress/pillars.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace tessaran::stress {
namespace {

bool isCoal(MaterialType type) {
    return type == MaterialType::linearElasticCoal || type == MaterialType::strainSofteningCoal ||
           type == MaterialType::elasticPlasticCoal;
}

// Walks from element to element through the coal that was not seen before.
class Walk {
  public:
    Walk(const std::vector<Material>& materials, const ElementLaws& laws, const SeamState& seam,
         const ElementField& field)
        : seam_(seam), field_(field), nX_(static_cast<std::size_t>(seam.nX)),
          nY_(static_cast<std::size_t>(seam.nY)) {
        coal_.reserve(laws.law.size());
        for (const std::uint8_t law : laws.law)
            coal_.push_back(law != kOpenEntry && isCoal(materials[law].type));
    }

    std::vector<Pillar> run() {
        std::vector<Pillar> out;
        for (std::size_t element = 0; element < coal_.size(); ++element)
            if (coal_[element])
                out.push_back(pillarFrom(element));
        return out;
    }

  private:
    Pillar pillarFrom(std::size_t first) {
        Pillar pillar;
        pillar.leastStress = pillar.mostStress = seam_.total[first];
        double columns = 0.0;
        double rows = 0.0;
        visit(first);
        while (!open_.empty()) {
            const std::size_t element = open_.back();
            open_.pop_back();
            const std::size_t i = element / nY_;
            const std::size_t j = element % nY_;
            columns += static_cast<double>(i) + 0.5;
            rows += static_cast<double>(j) + 0.5;
            add(pillar, seam_.total[element]);
            pillar.atEdge = pillar.atEdge || i == 0 || j == 0 || i + 1 == nX_ || j + 1 == nY_;
            if (i > 0)
                visit(element - nY_);
            if (i + 1 < nX_)
                visit(element + nY_);
            if (j > 0)
                visit(element - 1);
            if (j + 1 < nY_)
                visit(element + 1);
        }
        const auto count = static_cast<double>(pillar.elements);
        pillar.meanStress /= count;
        pillar.x = field_.x + field_.width * columns / count;
        pillar.y = field_.y + field_.width * rows / count;
        return pillar;
    }

    static void add(Pillar& pillar, double stress) {
        ++pillar.elements;
        pillar.meanStress += stress;
        pillar.leastStress = std::min(pillar.leastStress, stress);
        pillar.mostStress = std::max(pillar.mostStress, stress);
    }

    void visit(std::size_t element) {
        if (!coal_[element])
            return;
        coal_[element] = false;
        open_.push_back(element);
    }

    const SeamState& seam_;
    const ElementField& field_;
    std::size_t nX_;
    std::size_t nY_;
    std::vector<bool> coal_; // not seen yet
    std::vector<std::size_t> open_;
};

} // namespace

std::vector<Pillar> pillarsOf(const std::vector<Material>& materials, const ElementLaws& laws,
                              const SeamState& seam, const ElementField& field) {
    return Walk(materials, laws, seam, field).run();
}

std::string pillarText(const CModelDat& model, const PillarTable& pillars) {
    const Units& u = model.units();
    const double width = model.elementWidth * u.lengthFactor;
    std::string out = fmt::format("step,seam,pillar,x ({0}),y ({0}),elements,area ({0}2),"
                                  "mean stress ({1}),smallest stress ({1}),largest stress ({1}),"
                                  "at the edge\n",
                                  u.length, u.stress);
    for (std::size_t step = 0; step < pillars.size(); ++step)
        for (std::size_t seam = 0; seam < pillars[step].size(); ++seam) {
            int number = 0;
            for (const Pillar& p : pillars[step][seam])
                fmt::format_to(std::back_inserter(out),
                               "{},{},{},{:.10g},{:.10g},{},{:.6g},{:.6g},{:.6g},{:.6g},{}\n",
                               step + 1, seam + 1, ++number, p.x * u.lengthFactor,
                               p.y * u.lengthFactor, p.elements,
                               static_cast<double>(p.elements) * width * width,
                               p.meanStress * u.stressFactor, p.leastStress * u.stressFactor,
                               p.mostStress * u.stressFactor, p.atEdge ? "yes" : "no");
        }
    return out;
}

} // namespace tessaran::stress
