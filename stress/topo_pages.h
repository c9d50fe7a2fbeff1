#pragma once

// The three pages of the dialog of the topographic stress model: the ground, the seam, the rock and
// the control values. What is typed and the files stand in drawing units, which the chosen units
// name; the model gets consistent ones.

#include "host/dialog_model.h"
#include "stress/topo_input.h"

#include <optional>
#include <string>

namespace tessaran::stress {

// What the pages ask for.
struct TopoFields {
    std::string topographyFile{};
    double datumAboveSeam = 0.0;

    std::string seamFile{};
    double elementWidth = 0.0; // of a code map, which does not say it
    double seamZ = 0.0;

    int units = 1; // stress/model.h's systems
    double poissonsRatio = 0.25;
    double modulus = 3'000'000.0;
    double gradient = 1.1;
    double laminationThickness = 50.0;
    double overRelaxation = 1.35;
    int maxIterations = 5000;
    double convergence = 0.0001;
    std::string outputFile{};
};

class TopoSurfacePage final : public host::DialogPage {
  public:
    explicit TopoSurfacePage(TopoFields& fields) : fields_(fields) {}
    std::string title() const override { return " Surface Grid"; }
    void describe(host::PageBuilder& page) override;

  private:
    TopoFields& fields_;
};

class TopoSeamPage final : public host::DialogPage {
  public:
    explicit TopoSeamPage(TopoFields& fields) : fields_(fields) {}
    std::string title() const override { return " Seam Grid"; }
    void describe(host::PageBuilder& page) override;
    bool accept(host::DialogSession& session) override;

  private:
    void look(host::DialogSession& session);

    TopoFields& fields_;
    std::string found_; // of the seam grid file
};

class TopoControlPage final : public host::DialogPage {
  public:
    explicit TopoControlPage(TopoFields& fields) : fields_(fields) {}
    std::string title() const override { return " Properties&&Controls"; }
    void describe(host::PageBuilder& page) override;
    bool accept(host::DialogSession& session) override;

  private:
    TopoFields& fields_;
};

// The seam's elements in drawing units, from a grid file or a code map; an error's text says what
// is wrong.
base::Result<ElementField> seamElements(host::Host& host, const TopoFields& fields);

// The model of the fields: seam at the origin, consistent units. Nothing when the user was told at
// the command line what is wrong.
struct TopoPlan {
    CTopoModelDat data;
    double x = 0.0; // where the seam truly lies, consistent units
    double y = 0.0;
    double seamZ = 0.0;
};
std::optional<TopoPlan> planOf(host::Host& host, const TopoFields& fields);

} // namespace tessaran::stress
