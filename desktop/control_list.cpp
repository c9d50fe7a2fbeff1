// Lists of rows in columns: select, open by a double click, and the Delete key where the page has a
// button for it.

#include "desktop/control_makers.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <algorithm>
#include <functional>
#include <numeric>

namespace tessaran::desktop {
namespace {

using host::Control;
using host::DialogSession;
using Purpose = DialogSession::Purpose;

constexpr int kWidestColumn = 320; // pixels, before the user drags it
constexpr int kWidestList = 640;
constexpr int kWidestSharedList = 800;
constexpr int kShownRows = 7;

QStringList texts(const std::vector<std::string>& row) {
    QStringList out;
    for (const std::string& cell : row)
        out.append(QString::fromStdString(cell));
    return out;
}

class Rows final : public QTreeWidget {
  public:
    std::function<void()> onDelete;
    std::function<void()> onResize = [] {};

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->matches(QKeySequence::Delete))
            onDelete();
        else
            QTreeWidget::keyPressEvent(event);
    }
    void resizeEvent(QResizeEvent* event) override {
        QTreeWidget::resizeEvent(event);
        onResize();
    }
};

class ListView final : public ControlView {
  public:
    ListView(DialogActions& actions, const DialogActions::Place& place)
        : ControlView(actions, place) {
        name(*tree_, Purpose::select);
        tree_->setRootIsDecorated(false);
        tree_->setAlternatingRowColors(true);
        tree_->setUniformRowHeights(true);
        tree_->setSelectionMode(control().manySelected ? QAbstractItemView::ExtendedSelection
                                                       : QAbstractItemView::SingleSelection);
        tree_->setHeaderLabels(texts(control().columns));
        tree_->setHeaderHidden(control().columns.empty());
        tree_->header()->setStretchLastSection(control().columnShares.empty());
        fitColumns();
        tree_->setMinimumHeight((kShownRows + 1) * (tree_->fontMetrics().height() + 6));
        connectSignals();
    }

    QWidget* widget() override { return tree_; }
    void refresh() override {
        const QSignalBlocker blocker(tree_);
        const std::vector<Control::Row> rows = control().rows();
        if (rows != shown_ || tree_->topLevelItemCount() != static_cast<int>(rows.size()))
            fill(rows);
        const std::vector<int>& selected = *control().selection;
        for (int row = 0; row < tree_->topLevelItemCount(); ++row)
            tree_->topLevelItem(row)->setSelected(
                std::find(selected.begin(), selected.end(), row) != selected.end());
        if (!selected.empty() && selected.front() < tree_->topLevelItemCount())
            tree_->scrollToItem(tree_->topLevelItem(selected.front()));
    }

  private:
    void connectSignals() {
        QObject::connect(tree_, &QTreeWidget::itemSelectionChanged, tree_, [this] {
            actions_.select(place_, selectedRows());
            refresh();
        });
        QObject::connect(tree_, &QTreeWidget::itemDoubleClicked, tree_,
                         [this](QTreeWidgetItem* item) {
                             actions_.openRow(place_, tree_->indexOfTopLevelItem(item));
                         });
        tree_->onDelete = [this] { pressDelete(); };
        tree_->onResize = [this] { shareColumns(); };
    }

    std::vector<int> selectedRows() const {
        std::vector<int> rows;
        for (int row = 0; row < tree_->topLevelItemCount(); ++row)
            if (tree_->topLevelItem(row)->isSelected())
                rows.push_back(row);
        return rows;
    }

    void fill(const std::vector<Control::Row>& rows) {
        tree_->clear();
        QList<QTreeWidgetItem*> items;
        for (const Control::Row& row : rows)
            items.append(new QTreeWidgetItem(texts(row)));
        tree_->addTopLevelItems(items);
        fitColumns();
        shown_ = rows;
    }

    void fitColumns() {
        if (!control().columnShares.empty())
            return fitShares();
        int width = 2 * tree_->frameWidth() + 24; // with the bar beside the rows
        for (int column = 0; column < tree_->columnCount(); ++column) {
            tree_->resizeColumnToContents(column);
            tree_->setColumnWidth(column, std::min(tree_->columnWidth(column), kWidestColumn));
            width += tree_->columnWidth(column);
        }
        tree_->setMinimumWidth(std::min(width, kWidestList));
    }

    int allShares() const {
        const std::vector<int>& shares = control().columnShares;
        return std::accumulate(shares.begin(), shares.end(), 0);
    }

    // Wide enough for each column's share to hold what stands in it.
    void fitShares() {
        int width = 0;
        for (std::size_t k = 0; k < control().columnShares.size(); ++k) {
            tree_->resizeColumnToContents(static_cast<int>(k));
            width = std::max(width, tree_->columnWidth(static_cast<int>(k)) * allShares() /
                                        control().columnShares[k]);
        }
        tree_->setMinimumWidth(std::min(width, kWidestSharedList));
        shareColumns();
    }

    // The last column takes what the division leaves.
    void shareColumns() {
        const std::vector<int>& shares = control().columnShares;
        const int all = allShares();
        const int width = tree_->viewport()->width();
        int left = width;
        for (std::size_t k = 0; k < shares.size(); ++k) {
            const int part = k + 1 == shares.size() ? left : width * shares[k] / all;
            tree_->setColumnWidth(static_cast<int>(k), part);
            left -= part;
        }
    }

    // The button that deletes from the list stands behind it on the same page.
    void pressDelete() {
        const auto& controls = session().pages()[static_cast<std::size_t>(place_.page)].controls;
        bool behind = false;
        for (const auto& other : controls) {
            behind = behind || other.get() == place_.control;
            if (!behind || other->kind != host::ControlKind::button)
                continue;
            const std::string label = host::plainLabel(other->label);
            if (label == "delete" || label == "remove")
                return actions_.press({place_.page, other.get(), -1});
        }
    }

    Rows* tree_ = new Rows;
    std::vector<Control::Row> shown_;
};

} // namespace

MadeView makeListView(DialogActions& actions, const DialogActions::Place& place) {
    return std::make_unique<ListView>(actions, place);
}

} // namespace tessaran::desktop
