#include "desktop/layer_panel.h"

#include "desktop/colour_choice.h"
#include "desktop/qt_text.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QPushButton>
#include <QVBoxLayout>

namespace tessaran::desktop {
namespace {

constexpr int kColourRole = Qt::UserRole;

void setChecked(QTreeWidgetItem& item, int column, bool on) {
    item.setCheckState(column, on ? Qt::Checked : Qt::Unchecked);
}

QTreeWidgetItem* itemOf(const host::Layer& layer, bool current) {
    auto* item = new QTreeWidgetItem;
    item->setText(LayerPanel::kName, qt(layer.name));
    item->setToolTip(LayerPanel::kName, qt(layer.name + ", " + layer.linetype));
    QFont font = item->font(LayerPanel::kName);
    font.setBold(current);
    item->setFont(LayerPanel::kName, font);
    if (current)
        item->setToolTip(LayerPanel::kName, qt(layer.name + " (current)"));
    setChecked(*item, LayerPanel::kOn, layer.on);
    setChecked(*item, LayerPanel::kFrozen, layer.frozen);
    setChecked(*item, LayerPanel::kLocked, layer.locked);
    item->setIcon(LayerPanel::kColour, colourIcon(layer.colour));
    item->setText(LayerPanel::kColour, QString::number(layer.colour));
    item->setData(LayerPanel::kColour, kColourRole, layer.colour);
    return item;
}

} // namespace

LayerPanel::LayerPanel(Run run, QWidget* parent)
    : QWidget(parent), run_(std::move(run)), filter_(new QLineEdit(this)),
      list_(new QTreeWidget(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    filter_->setPlaceholderText("Find a layer");
    filter_->setClearButtonEnabled(true);
    column->addWidget(filter_);
    list_->setObjectName("layerList");
    list_->setColumnCount(kColumns);
    list_->setHeaderLabels({"Layer", "On", "Frozen", "Locked", "Colour"});
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAlternatingRowColors(true);
    list_->header()->setStretchLastSection(false);
    list_->header()->setSectionResizeMode(kName, QHeaderView::Stretch);
    for (int k = kOn; k < kColumns; ++k)
        list_->header()->setSectionResizeMode(k, QHeaderView::ResizeToContents);
    column->addWidget(list_, 1);
    auto* row = new QHBoxLayout;
    auto* add = new QPushButton("&New...", this);
    auto* current = new QPushButton("Make &Current", this);
    row->addWidget(add);
    row->addWidget(current);
    row->addStretch(1);
    column->addLayout(row);
    QObject::connect(add, &QPushButton::clicked, this, [this] { addLayer(); });
    QObject::connect(current, &QPushButton::clicked, this,
                     [this] { makeCurrent(list_->currentItem()); });
    QObject::connect(filter_, &QLineEdit::textChanged, this, [this] { filter(); });
    QObject::connect(list_, &QTreeWidget::itemChanged, this,
                     [this](QTreeWidgetItem* item, int k) { changed(item, k); });
    QObject::connect(list_, &QTreeWidget::itemClicked, this,
                     [this](QTreeWidgetItem* item, int k) { clicked(item, k); });
    QObject::connect(list_, &QTreeWidget::itemDoubleClicked, this,
                     [this](QTreeWidgetItem* item, int k) {
                         if (k == kName)
                             makeCurrent(item);
                     });
}

void LayerPanel::show(const drawing::Database& database) {
    if (shown_ == &database && revision_ == database.revision())
        return;
    shown_ = &database;
    revision_ = database.revision();
    filling_ = true;
    fill(database);
    filling_ = false;
    filter();
}

void LayerPanel::fill(const drawing::Database& database) {
    const QString chosen =
        list_->currentItem() != nullptr ? list_->currentItem()->text(kName) : QString();
    const std::string current = database.currentLayer();
    list_->setUpdatesEnabled(false);
    list_->clear();
    QList<QTreeWidgetItem*> items;
    for (const host::Layer& layer : database.layers())
        items.push_back(itemOf(layer, layer.name == current));
    list_->addTopLevelItems(items);
    list_->sortItems(kName, Qt::AscendingOrder);
    for (QTreeWidgetItem* item : items)
        if (item->text(kName) == chosen)
            list_->setCurrentItem(item);
    list_->setUpdatesEnabled(true);
}

void LayerPanel::changed(QTreeWidgetItem* item, int column) {
    if (filling_)
        return;
    const bool on = item->checkState(column) == Qt::Checked;
    const char* option = column == kOn       ? (on ? "ON" : "OFF")
                         : column == kFrozen ? (on ? "Freeze" : "Thaw")
                         : column == kLocked ? (on ? "LOck" : "Unlock")
                                             : nullptr;
    if (option == nullptr || run_({"LAYER", option, utf8(item->text(kName)), ""}))
        return;
    filling_ = true; // it cannot be done now: the box goes back
    setChecked(*item, column, !on);
    filling_ = false;
}

void LayerPanel::clicked(QTreeWidgetItem* item, int column) {
    if (column != kColour)
        return;
    const std::string name = utf8(item->text(kName));
    const int present = item->data(kColour, kColourRole).toInt();
    if (const auto colour = chooseColour(this, present, false))
        run_({"LAYER", "Color", std::to_string(*colour), name, ""});
}

void LayerPanel::makeCurrent(QTreeWidgetItem* item) {
    if (item != nullptr)
        run_({"LAYER", "Set", utf8(item->text(kName)), ""});
}

void LayerPanel::addLayer() {
    const QString name =
        QInputDialog::getText(this, "New layer", "Name of the new layer:").trimmed();
    if (!name.isEmpty())
        run_({"LAYER", "Make", utf8(name), ""});
}

void LayerPanel::filter() {
    for (int k = 0; k < list_->topLevelItemCount(); ++k) {
        QTreeWidgetItem* item = list_->topLevelItem(k);
        item->setHidden(!item->text(kName).contains(filter_->text(), Qt::CaseInsensitive));
    }
}

} // namespace tessaran::desktop
