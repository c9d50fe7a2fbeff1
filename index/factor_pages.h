#pragma once

// The two pages of the factor transformation's dialog.

#include "host/dialog_model.h"
#include "index/factor_transformation.h"

#include <string>

namespace tessaran::index {

// Which grid, where to, and what is known of the grid.
class CGenFactFileTab final : public host::DialogPage {
  public:
    std::string title() const override { return "Grid File"; }
    void describe(host::PageBuilder& page) override;
    bool mayLeave(host::DialogSession& session) override;

    const std::string& inputFile() const { return inputFile_; }
    const std::string& outputFile() const { return outputFile_; }
    const std::string& description() const { return description_; }
    // "%f" texts of the smallest and largest value; the second page works with these digits.
    const std::string& minimum() const { return minimum_; }
    const std::string& maximum() const { return maximum_; }

  private:
    void readInput(host::Host& host);
    void chooseInput(host::DialogSession& session);
    void chooseOutput(host::DialogSession& session);
    void outputChosen(host::DialogSession& session);
    void preview(host::DialogSession& session);
    std::string proposedOutput() const;

    std::string inputFile_;
    std::string outputFile_;
    std::string description_;
    std::string information_ = "Grid does not specified!";
    std::string minimum_ = "0.000000";
    std::string maximum_ = "0.000000";
    bool ready_ = false;
};

// What is made of the grid's values.
class CGenFactFuncTab final : public host::DialogPage {
  public:
    explicit CGenFactFuncTab(const CGenFactFileTab& file) : file_(file) {}

    std::string title() const override { return "Function"; }
    void describe(host::PageBuilder& page) override;
    void activated(host::DialogSession& session) override;
    bool mayLeave(host::DialogSession& session) override;

    FactorTransformation transformation() const;
    bool previewsResult() const { return previewsResult_; }

  private:
    FactorFunction function() const { return static_cast<FactorFunction>(function_); }
    void resetBounds();

    const CGenFactFileTab& file_;
    std::string minimum_;
    std::string maximum_;
    int function_ = -1;
    int tendency_ = 1;
    FactorBounds bounds_;
    bool previewsResult_ = true;
};

class FactorDialog final : public host::Dialog {
  public:
    FactorDialog(CGenFactFileTab& file, CGenFactFuncTab& function)
        : Dialog("Individual Factor Generation/Normalization", {&file, &function}) {}

    // On the first page the button in OK's place turns the page.
    std::string okLabel(const host::DialogSession& session) const override;
    bool okPressed(host::DialogSession& session) override;
};

} // namespace tessaran::index
