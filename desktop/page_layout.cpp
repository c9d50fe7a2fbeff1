#include "desktop/page_layout.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QVBoxLayout>
#include <algorithm>

namespace tessaran::desktop {
namespace {

using host::Control;
using host::ControlKind;

constexpr std::size_t kLongCaption = 36;  // characters; stands over its field
constexpr int kButtonRowWidth = 560;      // pixels
constexpr std::size_t kFewestColumns = 3; // groups that are alike make a table from here on
constexpr int kColumns = 3;               // caption, field, beside

enum Column { captionColumn, fieldColumn, besideColumn };

struct Section {
    std::string title;
    std::vector<Control*> controls;
};

std::vector<Section> sectionsOf(const host::DialogSession::PageControls& page) {
    std::vector<Section> out;
    for (const auto& control : page.controls) {
        if (out.empty() || out.back().title != control->group)
            out.push_back({control->group, {}});
        out.back().controls.push_back(control.get());
    }
    return out;
}

bool alike(const Section& a, const Section& b) {
    return !a.title.empty() && !b.title.empty() &&
           std::equal(a.controls.begin(), a.controls.end(), b.controls.begin(), b.controls.end(),
                      [](const Control* x, const Control* y) {
                          return x->kind == y->kind && x->label == y->label;
                      });
}

std::size_t endOfAlike(const std::vector<Section>& sections, std::size_t begin) {
    std::size_t end = begin + 1;
    while (end < sections.size() && alike(sections[begin], sections[end]))
        ++end;
    return end;
}

bool isField(const Control& control) {
    return control.kind == ControlKind::text || control.kind == ControlKind::names ||
           control.kind == ControlKind::dropList || control.kind == ControlKind::information ||
           control.kind == ControlKind::radio;
}

// A button alone behind a field belongs to it, and so does one that browses for its file; of
// several others, those that say so.
bool standsBeside(const std::vector<Control*>& controls, std::size_t k) {
    if (k == 0 || controls[k]->beside)
        return k > 0;
    const bool button = controls[k]->kind == ControlKind::button;
    const bool alone = k + 1 == controls.size() || controls[k + 1]->kind != ControlKind::button;
    const bool browses = host::plainLabel(controls[k]->label) == "browse";
    return button && (alone || browses) && isField(*controls[k - 1]);
}

bool hasCaption(const Control& control) {
    return !control.label.empty() && (isField(control) || control.kind == ControlKind::list);
}

class PageLayout {
  public:
    PageLayout(DialogActions& actions, int page, ControlViews& views)
        : actions_(actions), page_(page), views_(views) {}

    QWidget* build() {
        auto* page = new QWidget;
        column_ = new QVBoxLayout(page);
        const std::vector<Section> sections =
            sectionsOf(actions_.session().pages()[static_cast<std::size_t>(page_)]);
        for (std::size_t k = 0; k < sections.size();) {
            const std::size_t end = endOfAlike(sections, k);
            if (end - k >= kFewestColumns) {
                addTable({sections.begin() + static_cast<std::ptrdiff_t>(k),
                          sections.begin() + static_cast<std::ptrdiff_t>(end)});
                k = end;
            } else {
                addSection(sections[k++]);
            }
        }
        if (!stretches_)
            column_->addStretch(1);
        alignCaptions();
        return page;
    }

  private:
    ControlView& view(Control& control) {
        views_.push_back(makeControlView(actions_, {page_, &control, -1}));
        return *views_.back();
    }

    QLabel* caption(ControlView& view) {
        auto* label = new QLabel(view.captionText());
        label->setBuddy(view.widget());
        label->setToolTip(QString::fromStdString(view.control().toolTip));
        view.setCaption(label);
        return label;
    }

    // --- one group under the other

    void addSection(const Section& section) {
        QWidget* box = section.title.empty() ? new QWidget
                                             : new QGroupBox(QString::fromStdString(section.title));
        auto* grid = new QGridLayout(box);
        if (section.title.empty())
            grid->setContentsMargins(0, 0, 0, 0);
        grid->setColumnStretch(fieldColumn, 1);
        grids_.push_back(grid);
        for (std::size_t k = 0; k < section.controls.size();)
            k = section.controls[k]->kind == ControlKind::button ? addButtons(*grid, section, k)
                                                                 : addLine(*grid, section, k);
        column_->addWidget(box, holdsList(section) ? 1 : 0);
        stretches_ = stretches_ || holdsList(section);
    }

    static bool holdsList(const Section& section) {
        return std::any_of(section.controls.begin(), section.controls.end(),
                           [](const Control* c) { return c->kind == ControlKind::list; });
    }

    // The controls from `begin` that share a line; the number of the one behind it. Widgets come
    // into the window in the order of the description, which makes it the keyboard's.
    std::size_t addLine(QGridLayout& grid, const Section& section, std::size_t begin) {
        const int row = grid.rowCount();
        std::size_t end = begin + 1;
        while (end < section.controls.size() && standsBeside(section.controls, end))
            ++end;
        const bool alone = end == begin + 1;
        place(grid, row, alone ? kColumns : kColumns - 1, view(*section.controls[begin]));
        if (alone)
            return end;
        auto* beside = new QHBoxLayout;
        for (std::size_t k = begin + 1; k < end; ++k)
            beside->addWidget(view(*section.controls[k]).widget());
        grid.addLayout(beside, row, besideColumn);
        return end;
    }

    void place(QGridLayout& grid, int row, int columns, ControlView& first) {
        const Control& control = first.control();
        const bool over = control.kind == ControlKind::list || control.label.size() > kLongCaption;
        if (!hasCaption(control)) {
            grid.addWidget(first.widget(), row, 0, 1, columns);
        } else if (over) {
            grid.addWidget(caption(first), row, 0, 1, columns);
            grid.addWidget(first.widget(), row + 1, 0, 1, columns);
            grid.setRowStretch(row + 1, control.kind == ControlKind::list ? 1 : 0);
        } else {
            grid.addWidget(caption(first), row, captionColumn);
            grid.addWidget(first.widget(), row, fieldColumn, 1, columns - 1);
        }
    }

    // A run of buttons, all as wide as the widest.
    std::size_t addButtons(QGridLayout& grid, const Section& section, std::size_t begin) {
        std::vector<QWidget*> buttons;
        int width = 0;
        std::size_t end = begin;
        for (; end < section.controls.size() && section.controls[end]->kind == ControlKind::button;
             ++end) {
            buttons.push_back(view(*section.controls[end]).widget());
            width = std::max(width, buttons.back()->sizeHint().width());
        }
        auto* row = new QGridLayout;
        row->setContentsMargins(0, begin > 0 ? 6 : 0, 0, 0);
        const int perRow = columnsFor(static_cast<int>(buttons.size()), width);
        for (int k = 0; k < static_cast<int>(buttons.size()); ++k)
            row->addWidget(buttons[static_cast<std::size_t>(k)], k / perRow, k % perRow);
        for (int k = 0; k < perRow; ++k)
            row->setColumnMinimumWidth(k, width);
        row->setColumnStretch(perRow, 1);
        grid.addLayout(row, grid.rowCount(), 0, 1, kColumns);
        return end;
    }

    // As few rows as fit the width, and those filled evenly.
    static int columnsFor(int count, int width) {
        const int most = std::max(1, kButtonRowWidth / std::max(1, width + 6));
        const int rows = (count + most - 1) / most;
        return (count + rows - 1) / rows;
    }

    // Fields of all groups begin at one place.
    void alignCaptions() {
        int width = 0;
        for (QGridLayout* grid : grids_)
            for (int row = 0; row < grid->rowCount(); ++row)
                if (const QLayoutItem* item = grid->itemAtPosition(row, captionColumn))
                    if (const auto* label = qobject_cast<QLabel*>(item->widget());
                        label != nullptr && grid->itemAtPosition(row, fieldColumn) != item)
                        width = std::max(width, label->sizeHint().width());
        for (QGridLayout* grid : grids_)
            grid->setColumnMinimumWidth(captionColumn, width);
    }

    // --- groups that are alike, one a column

    void addTable(const std::vector<Section>& sections) {
        auto* box = new QWidget;
        auto* grid = new QGridLayout(box);
        grid->setContentsMargins(0, 6, 0, 6);
        for (std::size_t k = 0; k < sections.size(); ++k)
            addTableColumn(*grid, sections[k], static_cast<int>(k) + 1);
        column_->addWidget(box);
    }

    void addTableColumn(QGridLayout& grid, const Section& section, int column) {
        auto* title = new QLabel(QString::fromStdString(section.title));
        QFont bold = title->font();
        bold.setBold(true);
        title->setFont(bold);
        grid.addWidget(title, 0, column);
        grid.setColumnStretch(column, 1);
        for (std::size_t k = 0; k < section.controls.size(); ++k) {
            const int row = static_cast<int>(k) + 1;
            ControlView& cell = view(*section.controls[k]);
            if (cell.control().kind == ControlKind::radio) // columns are narrow
                if (auto* buttons = qobject_cast<QBoxLayout*>(cell.widget()->layout()))
                    buttons->setDirection(QBoxLayout::TopToBottom);
            grid.addWidget(cell.widget(), row, column);
            if (column == 1 && hasCaption(*section.controls[k]))
                grid.addWidget(new QLabel(cell.captionText()), row, 0);
        }
    }

    DialogActions& actions_;
    int page_;
    ControlViews& views_;
    QVBoxLayout* column_ = nullptr;
    std::vector<QGridLayout*> grids_;
    bool stretches_ = false;
};

} // namespace

QWidget* layOutPage(DialogActions& actions, int page, ControlViews& views) {
    return PageLayout(actions, page, views).build();
}

} // namespace tessaran::desktop
