#pragma once

// The drawing's layers: which are on, frozen and locked, their colours, and which one is current.
// What is changed here goes through the LAYER command.

#include "drawing/database.h"

#include <QLineEdit>
#include <QTreeWidget>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

namespace tessaran::desktop {

class LayerPanel final : public QWidget {
  public:
    enum Column { kName, kOn, kFrozen, kLocked, kColour, kColumns };

    // `run`: a command with its answers.
    using Run = std::function<bool(std::vector<std::string>)>;
    LayerPanel(Run run, QWidget* parent);

    void show(const drawing::Database& database);
    QTreeWidget& list() { return *list_; }

  private:
    void fill(const drawing::Database& database);
    void changed(QTreeWidgetItem* item, int column);
    void clicked(QTreeWidgetItem* item, int column);
    void makeCurrent(QTreeWidgetItem* item);
    void addLayer();
    void filter();

    Run run_;
    QLineEdit* filter_;
    QTreeWidget* list_;
    const drawing::Database* shown_ = nullptr;
    std::uint64_t revision_ = 0;
    bool filling_ = false;
};

} // namespace tessaran::desktop
