#pragma once

// The dialog "Mapping Stability Index on Entries".

#include "grid/colour_ramp.h"
#include "grid/my_grid.h"
#include "host/dialog_model.h"
#include "host/entity.h"

#include <functional>
#include <string>
#include <vector>

namespace tessaran::index {

class MappingPage final : public host::DialogPage {
  public:
    void describe(host::PageBuilder& page) override;
    void opened(host::DialogSession& session) override;
    bool mayClose(host::DialogSession& session, bool accepted) override;

  private:
    void describeGrid(host::PageBuilder& page);
    void describeLayers(host::PageBuilder& page);
    void describeValues(host::PageBuilder& page);
    void describeActions(host::PageBuilder& page);

    void chooseGrid(host::DialogSession& session);
    void readIndexGrid(host::Host& host);
    void preview(host::DialogSession& session);
    void createLayer(host::DialogSession& session);
    void analyze(host::DialogSession& session);
    void pickRegions(host::DialogSession& session);
    void hatch(host::DialogSession& session);
    void drawLegend(host::DialogSession& session);

    bool isReadyToAnalyze(host::Host& host) const;    // tells what is missing
    bool prepareMappingLayer(host::Host& host) const; // tells when it failed
    bool askAboutEarlierRegions(host::Host& host);    // false: the user cancelled
    void eraseNewRegions(host::Host& host);
    grid::ColourRamp ramp() const;
    std::size_t regionCount() const { return newRegions_.size() + pickedRegions_.size(); }
    void showRegionCount();

    std::function<std::vector<std::string>()> layers_; // of the drawing
    std::string gridFile_;
    grid::myGrid grid_;
    bool gridReady_ = false;
    std::vector<std::string> pillarLayers_;
    std::string mappingLayer_;
    int option_ = 0;
    double threshold_ = 0.0;
    bool blackWhite_ = false;
    std::string hint_;
    std::vector<host::EntityId> newRegions_;
    std::vector<host::EntityId> pickedRegions_;
};

class dlg_indexmapping final : public host::Dialog { // NOLINT(readability-identifier-naming)
  public:
    explicit dlg_indexmapping(MappingPage& page)
        : Dialog("Mapping Stability Index on Entries", {&page}) {}

    std::string okLabel(const host::DialogSession& /*session*/) const override { return {}; }
    std::string cancelLabel(const host::DialogSession& /*session*/) const override {
        return "E&xit";
    }
};

} // namespace tessaran::index
