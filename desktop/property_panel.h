#pragma once

// The properties of the selected objects. What the CHPROP command changes can be changed here
// through it; the rest is told.

#include "drawing/database.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

namespace tessaran::desktop {

class PropertyPanel final : public QWidget {
  public:
    using Run = std::function<bool(std::vector<std::string>)>;
    PropertyPanel(Run run, QWidget* parent);

    void show(const drawing::Database& database, const std::vector<host::EntityId>& selection);
    QTreeWidget& facts() { return *facts_; }
    QComboBox& layer() { return *layer_; }

  private:
    void clear();
    void fillLayers(const drawing::Database& database);
    void showSeveral(const std::vector<const drawing::EntityRecord*>& records);
    void addFact(const std::string& name, const std::string& value);
    void change(const std::string& property, const std::string& value);

    Run run_;
    std::vector<host::EntityId> selection_;
    QLabel* title_;
    QComboBox* layer_;
    QPushButton* colour_;
    QComboBox* linetype_;
    QTreeWidget* facts_;
    int presentColour_ = 0;
};

} // namespace tessaran::desktop
