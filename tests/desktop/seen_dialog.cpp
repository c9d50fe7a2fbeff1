#include "desktop/seen_dialog.h"

#include "desktop/dialog_window.h"

#include <fmt/format.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTabBar>
#include <QTreeWidget>

namespace tessaran::test {
namespace {

std::string plain(QString text) {
    text.remove('&');
    text = text.trimmed();
    while (text.endsWith(':'))
        text = text.chopped(1).trimmed();
    return text.toStdString();
}

class Reader {
  public:
    explicit Reader(const desktop::DialogWindow& window) : window_(window) {}

    std::vector<std::string> read() {
        put(window_.windowTitle().toStdString());
        const auto* stack = window_.findChild<QStackedWidget*>();
        for (int page = 0; page < stack->count(); ++page) {
            title(page);
            visit(stack->widget(page));
        }
        for (const char* name : {"dialog.ok", "dialog.cancel"}) {
            const auto* button = window_.findChild<QPushButton*>(name);
            if (button->isVisibleTo(&window_))
                put("[ " + plain(button->text()) + " ]");
        }
        return std::move(lines_);
    }

  private:
    void put(std::string line) {
        while (!line.empty() && line.back() == ' ')
            line.pop_back();
        lines_.push_back(std::move(line));
    }

    void title(int page) {
        if (const auto* tabs = window_.findChild<QTabBar*>("pages"))
            put("page " + tabs->tabText(page).toStdString() +
                (tabs->currentIndex() == page ? " (in front)" : ""));
        else if (const auto* list = window_.findChild<QListWidget*>("pages"))
            put("page " + list->item(page)->text().toStdString() +
                (list->currentRow() == page ? " (in front)" : ""));
    }

    // The text that stands before a widget: its label, or that of its row in a table.
    std::string caption(const QWidget* widget) const {
        for (const auto* label : window_.findChildren<QLabel*>())
            if (label->buddy() == widget)
                return plain(label->text());
        const auto* grid = qobject_cast<QGridLayout*>(widget->parentWidget()->layout());
        const int index = grid != nullptr ? grid->indexOf(const_cast<QWidget*>(widget)) : -1;
        if (index < 0)
            return {};
        int row = 0, column = 0, rows = 0, columns = 0;
        grid->getItemPosition(index, &row, &column, &rows, &columns);
        const QLayoutItem* first = grid->itemAtPosition(row, 0);
        const auto* label = first ? qobject_cast<QLabel*>(first->widget()) : nullptr;
        return column > 0 && label != nullptr ? plain(label->text()) : std::string{};
    }

    std::string tail(const QWidget* widget) const {
        return widget->isEnabledTo(&window_) ? "" : " (disabled)";
    }

    void visitChildren(const QWidget* widget) {
        for (const QObject* child : widget->children())
            if (const auto* inner = qobject_cast<const QWidget*>(child))
                visit(inner);
    }

    void visit(const QWidget* widget) {
        if (const auto* box = qobject_cast<const QGroupBox*>(widget)) {
            put("group " + plain(box->title()));
            visitChildren(widget);
        } else if (const auto* edit = qobject_cast<const QLineEdit*>(widget)) {
            put(caption(edit) + " = " + edit->text().toStdString() + tail(edit));
        } else if (const auto* combo = qobject_cast<const QComboBox*>(widget)) {
            put(caption(combo) + " = " + combo->currentText().toStdString() + tail(combo));
        } else if (const auto* check = qobject_cast<const QCheckBox*>(widget)) {
            put(fmt::format("[{}] {}{}", check->isChecked() ? "x" : " ", plain(check->text()),
                            tail(check)));
        } else if (const auto* radio = qobject_cast<const QRadioButton*>(widget)) {
            put(fmt::format("({}) {}{}", radio->isChecked() ? "*" : " ", plain(radio->text()),
                            tail(radio)));
        } else if (const auto* button = qobject_cast<const QPushButton*>(widget)) {
            put("[ " + plain(button->text()) + " ]" + tail(button));
        } else if (const auto* tree = qobject_cast<const QTreeWidget*>(widget)) {
            list(*tree);
        } else if (const auto* label = qobject_cast<const QLabel*>(widget)) {
            text(*label);
        } else if (widget->findChild<QRadioButton*>() != nullptr &&
                   widget->objectName().endsWith(" (buttons)")) {
            if (const std::string name = caption(widget); !name.empty())
                put(name + tail(widget));
            visitChildren(widget);
        } else if (const auto* pane = widget->findChild<QPlainTextEdit*>();
                   pane != nullptr && pane->parent() == widget) {
            information(*widget, *pane);
        } else {
            visitChildren(widget);
        }
    }

    void information(const QWidget& frame, const QPlainTextEdit& pane) {
        const auto* label = frame.findChild<QLabel*>();
        const QString shown = pane.isVisibleTo(&frame) ? "\n" + pane.toPlainText() : label->text();
        const std::string name = caption(&frame);
        put((name.empty() ? "" : name + ": ") + shown.toStdString());
    }

    void text(const QLabel& label) {
        if (label.buddy() == nullptr && label.font().bold())
            put("group " + plain(label.text()));
        else if (label.text().startsWith("<a href"))
            put("link " + label.text().section('>', 1).section('<', 0, 0).toStdString() + " -> " +
                label.text().section('"', 1, 1).toStdString());
    }

    void list(const QTreeWidget& tree) {
        put("list " + caption(&tree) + tail(&tree));
        const auto row = [&](const auto& cell) {
            std::string out;
            for (int k = 0; k < tree.columnCount(); ++k)
                out += (k > 0 ? " | " : "") + cell(k).toStdString();
            return out;
        };
        if (!tree.isHeaderHidden())
            put(row([&](int k) { return tree.headerItem()->text(k); }));
        for (int i = 0; i < tree.topLevelItemCount(); ++i) {
            const QTreeWidgetItem* item = tree.topLevelItem(i);
            put(fmt::format("{}#{} {}", item->isSelected() ? "> " : "", i + 1,
                            row([&](int k) { return item->text(k); })));
        }
    }

    const desktop::DialogWindow& window_;
    std::vector<std::string> lines_;
};

} // namespace

std::vector<std::string> seenDialog(const desktop::DialogWindow& window) {
    return Reader(window).read();
}

} // namespace tessaran::test
