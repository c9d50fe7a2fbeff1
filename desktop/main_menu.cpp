#include "desktop/main_menu.h"

#include "desktop/main_window.h"
#include "desktop/manual_pages.h"
#include "desktop/qt_text.h"
#include "desktop/recent_files.h"
#include "desktop/tool_icons.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QToolBar>

namespace tessaran::desktop {

MainMenu::MainMenu(MainWindow& window) : window_(window) {
    window_.menuBar()->clear();
    buildFile();
    buildEdit();
    buildView();
    buildDraw();
    for (const auto& pullDown : window_.state().menuBar.pullDowns())
        addModuleItems(window_.menuBar()->addMenu(qt(pullDown.name)), pullDown.items);
    buildTools();
    buildHelp();
    buildToolBar();
}

QAction* MainMenu::add(QMenu* menu, const QString& label, const QKeySequence& keys,
                       std::function<void()> run, const QString& help) {
    QAction* action = menu->addAction(label);
    action->setShortcut(keys);
    action->setStatusTip(help);
    QObject::connect(action, &QAction::triggered, &window_, [run = std::move(run)] { run(); });
    return action;
}

QAction* MainMenu::addCommand(QMenu* menu, const QString& label, const QKeySequence& keys,
                              std::vector<std::string> lines, const QString& help) {
    return add(
        menu, label, keys, [this, lines = std::move(lines)] { window_.run(lines); }, help);
}

// Puts the item into the tool bar too, under that picture.
void MainMenu::onBar(QAction* action, ToolIcon icon) {
    action->setIcon(toolIcon(icon, window_.palette().color(QPalette::ButtonText)));
    action->setIconVisibleInMenu(false);
    onBar_.push_back(action);
}

void MainMenu::buildToolBar() {
    QToolBar* bar = window_.addToolBar("Tool Bar");
    bar->setObjectName("toolBar");
    bar->setIconSize({kToolIconSize, kToolIconSize});
    for (QAction* action : onBar_)
        if (action != nullptr)
            bar->addAction(action);
        else
            bar->addSeparator();
    panels_->addSeparator();
    panels_->addAction(bar->toggleViewAction());
}

void MainMenu::buildFile() {
    QMenu* menu = window_.menuBar()->addMenu("&File");
    onBar(addCommand(menu, "&New", QKeySequence::New, {"NEW"}, "Begins an empty drawing"),
          ToolIcon::newDrawing);
    onBar(addCommand(menu, "&Open...", QKeySequence::Open, {"OPEN", ""}, "Opens a drawing file"),
          ToolIcon::open);
    recent_ = menu->addMenu("Open &Recent");
    menu->addSeparator();
    onBar(addCommand(menu, "&Save", QKeySequence::Save, {"SAVE", ""},
                     "Saves the drawing to its file"),
          ToolIcon::save);
    onBar_.push_back(nullptr);
    addCommand(menu, "Save &As...", QKeySequence::SaveAs, {"SAVEAS", ""},
               "Saves the drawing to another file");
    add(
        menu, "Save Session as S&cript...", {}, [this] { saveSession(); },
        "Writes what was typed, picked and clicked since the drawing was opened as a script");
    menu->addSeparator();
    addCommand(menu, "&Close", QKeySequence::Close, {"CLOSE"}, "Closes the drawing");
    add(
        menu, "&Quit", QKeySequence::Quit, [this] { window_.close(); }, "Ends the program");
}

void MainMenu::buildEdit() {
    QMenu* menu = window_.menuBar()->addMenu("&Edit");
    undo_ =
        addCommand(menu, "&Undo", QKeySequence::Undo, {"UNDO 1"}, "Takes the last command back");
    redo_ =
        addCommand(menu, "&Redo", QKeySequence::Redo, {"REDO"}, "Does again what was taken back");
    onBar(undo_, ToolIcon::undo);
    onBar(redo_, ToolIcon::redo);
    onBar_.push_back(nullptr);
    menu->addSeparator();
    const auto onSelection = [&](const QString& label, const QKeySequence& keys, const char* name,
                                 const char* help) {
        add(
            menu, label, keys, [this, name] { window_.runOnSelection(name); }, help);
    };
    onSelection("&Erase", QKeySequence::Delete, "ERASE", "Erases objects");
    onSelection("&Move", {}, "MOVE", "Moves objects");
    onSelection("&List", {}, "LIST", "Describes objects");
    menu->addSeparator();
    add(
        menu, "Select &All", QKeySequence::SelectAll,
        [this] {
            auto& document = window_.state().workspace.current();
            window_.view().select(document.database->select(host::SelectionFilter{}));
        },
        "Selects every object of the drawing");
}

void MainMenu::buildView() {
    QMenu* menu = window_.menuBar()->addMenu("&View");
    DrawingView& view = window_.view();
    const auto centre = [&view] { return QPointF(0.5 * view.width(), 0.5 * view.height()); };
    onBar(add(
              menu, "Zoom &Extents", QKeySequence("Ctrl+0"), [&view] { view.zoomExtents(); },
              "Shows the whole drawing"),
          ToolIcon::zoomExtents);
    onBar(add(
              menu, "Zoom &Window", {}, [&view] { view.beginZoomWindow(); },
              "Shows the box given by two corners"),
          ToolIcon::zoomWindow);
    onBar(add(
              menu, "Zoom &Previous", QKeySequence("Ctrl+Backspace"),
              [&view] { view.zoomPrevious(); }, "Goes back to the view before"),
          ToolIcon::zoomPrevious);
    onBar(add(
              menu, "Zoom &In", QKeySequence::ZoomIn,
              [&view, centre] { view.zoomBy(1.5, centre()); }, "Shows less, larger"),
          ToolIcon::zoomIn);
    onBar(add(
              menu, "Zoom &Out", QKeySequence::ZoomOut,
              [&view, centre] { view.zoomBy(1.0 / 1.5, centre()); }, "Shows more, smaller"),
          ToolIcon::zoomOut);
    menu->addSeparator();
    buildSnaps(menu->addMenu("Object &Snap"));
    menu->addAction(window_.orthoAction());
    menu->addSeparator();
    QAction* dark = menu->addAction("&Dark Background");
    dark->setCheckable(true);
    dark->setChecked(window_.isDark());
    QObject::connect(dark, &QAction::toggled, &window_, [this](bool on) { window_.setDark(on); });
    panels_ = menu->addMenu("&Panels");
    for (QDockWidget* dock : window_.findChildren<QDockWidget*>())
        panels_->addAction(dock->toggleViewAction());
}

void MainMenu::buildSnaps(QMenu* menu) {
    const auto mode = [&](const QString& label, SnapKind kind) {
        QAction* action = menu->addAction(label);
        action->setCheckable(true);
        action->setChecked(window_.view().snaps().has(kind));
        QObject::connect(action, &QAction::toggled, &window_, [this, kind](bool on) {
            SnapModes modes = window_.view().snaps();
            modes.set(kind, on);
            window_.view().setSnaps(modes);
        });
    };
    mode("&Endpoint", SnapKind::end);
    mode("&Middle", SnapKind::middle);
    mode("&Intersection", SnapKind::intersection);
    mode("&Nearest", SnapKind::nearest);
}

void MainMenu::buildDraw() {
    QMenu* menu = window_.menuBar()->addMenu("&Draw");
    addCommand(menu, "&Line", {}, {"LINE"}, "Draws lines from point to point");
    addCommand(menu, "&Polyline", {}, {"PLINE"}, "Draws a polyline");
    addCommand(menu, "P&oint", {}, {"POINT"}, "Draws a point");
    addCommand(menu, "&Text", {}, {"TEXT"}, "Writes a text");
}

void MainMenu::buildTools() {
    QMenu* menu = window_.menuBar()->addMenu("T&ools");
    addCommand(menu, "&CMRR", {}, {"CMRR"}, "Rates the roof from its rock units");
    add(
        menu, "Show &Grid...", {}, [this] { showGrid(); },
        "Shows a grid file's cells, values, statistics and histogram");
    menu->addSeparator();
    addCommand(menu, "Coordinate &System", {}, {"UCS"}, "Sets the user's coordinate system");
    addCommand(menu, "Set &Variable", {}, {"SETVAR"}, "Shows and sets system variables");
}

void MainMenu::buildHelp() {
    QMenu* menu = window_.menuBar()->addMenu("&Help");
    add(
        menu, "&Manual", QKeySequence::HelpContents, [this] { openManual(&window_); },
        "Opens the user's manual");
    addCommand(menu, "&Commands", {}, {"HELP"}, "Prints the commands");
    addCommand(menu, "&About Tessaran", {}, {"zelk_zelkabout"}, "About Tessaran System for Mines");
}

// A macro is what would be typed: two cancels first, and a blank for Enter at its end.
void MainMenu::addModuleItems(QMenu* menu, const std::vector<host::MenuItem>& items) {
    for (const host::MenuItem& item : items) {
        if (item.kind == host::MenuItem::Kind::separator) {
            menu->addSeparator();
        } else if (item.kind == host::MenuItem::Kind::submenu) {
            addModuleItems(menu->addMenu(qt(item.label)), item.items);
        } else {
            QString typed = qt(item.macro);
            typed.remove(QChar(3));
            QAction* action =
                addCommand(menu, qt(item.label), {}, {utf8(typed.trimmed())}, qt(item.helpText));
            action->setObjectName("module_" + typed.trimmed());
        }
    }
}

void MainMenu::showRecent() {
    recent_->clear();
    int number = 0;
    for (const std::string& file : recentFiles(window_.state().profileFile)) {
        const QString name = qt(file);
        add(
            recent_, QString("&%1 %2").arg(++number).arg(QFileInfo(name).fileName()), {},
            [this, file] {
                window_.run({"OPEN", file});
            },
            name);
    }
    recent_->setEnabled(number > 0);
}

void MainMenu::saveSession() {
    const QString path = QFileDialog::getSaveFileName(
        &window_, "Save Session as Script", "session.scr", "Scripts (*.scr);;All files (*)");
    if (!path.isEmpty())
        window_.saveSessionScript(path);
}

void MainMenu::showGrid() {
    const QString path = QFileDialog::getOpenFileName(&window_, "Show Grid", {},
                                                      "Grid files (*.grd);;All files (*)");
    if (!path.isEmpty())
        window_.showGrid(path);
}

void MainMenu::refresh(bool atCommandPrompt) {
    const drawing::Database& database = window_.state().workspace.database();
    const auto undone = database.undoNames();
    const auto redone = database.redoNames();
    undo_->setText(undone.empty() ? QString("&Undo") : "&Undo " + qt(undone.back()));
    redo_->setText(redone.empty() ? QString("&Redo") : "&Redo " + qt(redone.back()));
    undo_->setEnabled(atCommandPrompt && !undone.empty());
    redo_->setEnabled(atCommandPrompt && !redone.empty());
    showRecent();
}

} // namespace tessaran::desktop
