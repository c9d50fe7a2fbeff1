#include "desktop/main_window.h"

#include "base/file.h"
#include "base/numbers.h"
#include "desktop/click_answers.h"
#include "desktop/grid_panel.h"
#include "desktop/layer_panel.h"
#include "desktop/main_menu.h"
#include "desktop/property_panel.h"
#include "desktop/qt_text.h"
#include "desktop/recent_files.h"

#include <fmt/format.h>

#include <QCloseEvent>
#include <QDockWidget>
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QStatusBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace tessaran::desktop {
namespace {

constexpr qsizetype kMostTypedKept = 100;
constexpr int kStatusMilliseconds = 5000; // how long the status area shows a text

} // namespace

MainWindow::MainWindow(const Parts& parts)
    : parts_(parts), tabs_(new QTabBar), view_(nullptr), commands_(new CommandPanel(this)),
      meter_(new StatusMeter(parts.busy, this)), coordinates_(new QLabel(this)) {
    setObjectName("mainWindow");
    setAcceptDrops(true);
    resize(1280, 860);
    auto* centre = new QWidget(this);
    auto* column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    view_ = new DrawingView(parts_.state, parts_.board, centre);
    tabs_->setObjectName("documentTabs");
    tabs_->setTabsClosable(true);
    tabs_->setExpanding(false);
    tabs_->setDocumentMode(true);
    column->addWidget(tabs_);
    column->addWidget(view_, 1);
    setCentralWidget(centre);
    buildPanels();
    buildStatusBar();
    listen();
}

MainWindow::~MainWindow() = default;

QDockWidget* MainWindow::addPanel(const QString& title, const char* name, QWidget* panel,
                                  Qt::DockWidgetArea area) {
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(name);
    dock->setWidget(panel);
    addDockWidget(area, dock);
    return dock;
}

void MainWindow::buildPanels() {
    const auto command = [this](std::vector<std::string> lines) {
        // A panel's change waits for no command that is under way.
        const std::string last = lastCommand_; // nor does Enter repeat it
        const bool runs = parts_.lines.atCommandPrompt() && run(std::move(lines));
        lastCommand_ = last;
        return runs;
    };
    layers_ = new LayerPanel(command, this);
    properties_ = new PropertyPanel(command, this);
    grid_ = new GridPanel(this);
    auto* history = addPanel("Command Line", "commandDock", commands_, Qt::BottomDockWidgetArea);
    auto* layers = addPanel("Layers", "layerDock", layers_, Qt::RightDockWidgetArea);
    auto* properties = addPanel("Properties", "propertyDock", properties_, Qt::RightDockWidgetArea);
    gridDock_ = addPanel("Grid", "gridDock", grid_, Qt::RightDockWidgetArea);
    tabifyDockWidget(properties, gridDock_);
    gridDock_->hide();
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    resizeDocks({history}, {150}, Qt::Vertical);
    resizeDocks({layers}, {300}, Qt::Horizontal);
    grid_->setChanged([this] { view_->update(); });
    view_->setOverlay(
        [this](QPainter& painter, const drawing::PageMap& map) { grid_->paint(painter, map); });
}

void MainWindow::buildStatusBar() {
    ortho_ = new QAction("Ortho", this);
    ortho_->setCheckable(true);
    ortho_->setShortcut(QKeySequence(Qt::Key_F8));
    ortho_->setStatusTip("Keeps the next point level with or plumb to the last one");
    QObject::connect(ortho_, &QAction::toggled, this, [this](bool on) { view_->setOrtho(on); });
    auto* button = new QToolButton(this);
    button->setDefaultAction(ortho_);
    button->setAutoRaise(true);
    statusBar()->addPermanentWidget(button);
    coordinates_->setMinimumWidth(260);
    coordinates_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    statusBar()->addPermanentWidget(meter_);
    statusBar()->addPermanentWidget(coordinates_);
}

void MainWindow::buildMenus() {
    menu_ = std::make_unique<MainMenu>(*this);
}

void MainWindow::listen() {
    view_->setListener({
        .answer = [this](const std::vector<std::string>& lines) { parts_.lines.answer(lines); },
        .cursorMoved = [this](std::optional<host::Point3> at) { showCursor(at); },
        .selectionChanged = [this] { showSelection(); },
        .keyTyped = [this](QKeyEvent* event) { commands_->line().take(event); },
        .menuWanted = [this](QPoint) { submit(""); },
        .clicked = [this](host::Point2 at) { return gridDock_->isVisible() && grid_->inspect(at); },
    });
    commands_->line().setListener({
        .submitted = [this](const std::string& line) { submit(line); },
        .escaped = [this] { escape(); },
        .context =
            [this] {
                console::CompletionContext context;
                for (const host::Keyword& keyword : parts_.board.current().keywords)
                    context.keywords.push_back(keyword.name);
                if (parts_.board.atCommand())
                    for (const console::Command& command : parts_.state.commands.commands())
                        context.commands.push_back(command.localName);
                return context;
            },
    });
    commands_->setChosen([this](const std::string& keyword) { submit(keyword); });
    QObject::connect(tabs_, &QTabBar::tabBarClicked, this, [this](int index) {
        if (index < 0)
            return;
        const auto& wanted = *parts_.state.workspace.documents()[static_cast<std::size_t>(index)];
        if (&wanted != &parts_.state.workspace.current())
            run({"DOCUMENT", wanted.name});
        showDocuments();
    });
    QObject::connect(tabs_, &QTabBar::tabCloseRequested, this,
                     [this](int index) { closeTab(index); });
}

// --- what users do ------------------------------------------------------------------------------

bool MainWindow::run(std::vector<std::string> command) {
    if (!parts_.lines.waiting() || (inDialog_ && inDialog_()))
        return false;
    lastCommand_ = command.front();
    parts_.lines.run(std::move(command));
    return true;
}

bool MainWindow::runOnSelection(const std::string& command) {
    if (view_->selection().empty() || !parts_.lines.atCommandPrompt())
        return run({command});
    const std::string handles = handlesLine(view_->selection());
    view_->clearSelection();
    return run({command, handles, ""});
}

// Enter on the empty line runs the last command again, as hosts do.
void MainWindow::submit(const std::string& typed) {
    const bool repeats = typed.empty() && parts_.lines.atCommandPrompt();
    const std::string line = repeats ? lastCommand_ : typed;
    if (parts_.lines.atCommandPrompt())
        lastCommand_ = line;
    static const std::vector<std::string> onSelection{"ERASE", "MOVE", "LIST", "CHPROP"};
    const console::Command* command =
        parts_.board.atCommand() ? parts_.state.commands.find(line) : nullptr;
    if (command != nullptr && !view_->selection().empty() &&
        std::find(onSelection.begin(), onSelection.end(), command->localName) != onSelection.end())
        runOnSelection(command->localName);
    else
        parts_.lines.answer(line);
}

void MainWindow::escape() {
    if (view_->cancelDrag())
        return;
    if (parts_.lines.atCommandPrompt())
        view_->clearSelection();
    else if (!parts_.lines.answer("^C"))
        parts_.busy.escape();
}

void MainWindow::openFiles(const QStringList& files) {
    for (const QString& file : files)
        if (file.endsWith(".grd", Qt::CaseInsensitive))
            showGrid(file);
        else
            run({"OPEN", utf8(file)});
}

void MainWindow::closeTab(int index) {
    const auto& documents = parts_.state.workspace.documents();
    const auto at = static_cast<std::size_t>(index);
    if (index < 0 || at >= documents.size())
        return;
    if (documents[at].get() != &parts_.state.workspace.current())
        run({"DOCUMENT", documents[at]->name});
    run({"CLOSE"});
}

void MainWindow::saveSessionScript(const QString& path) {
    const auto written =
        base::writeFile(utf8(path), drawings_.script(parts_.recorder, parts_.state.workspace));
    if (!written)
        QMessageBox::warning(this, "Tessaran", qt(written.error().message()));
    else
        statusBar()->showMessage("Session saved as " + path, kStatusMilliseconds);
}

void MainWindow::setDark(bool dark) {
    dark_ = dark;
    view_->setStyle(dark ? ViewStyle::dark() : ViewStyle::light());
}

void MainWindow::showGrid(const QString& file) {
    if (!file.isEmpty() && !grid_->open(file))
        return;
    gridDock_->show();
    gridDock_->raise();
    const auto box = grid_->extents();
    if (!file.isEmpty() && box && !parts_.state.workspace.database().view().box().meets(*box))
        view_->showView(box->centre(), 1.1 * std::max(box->height(), 0.6 * box->width()));
}

void MainWindow::showSelection() {
    properties_->show(parts_.state.workspace.database(), view_->selection());
}

void MainWindow::restore() {
    const host::Profile& profile = parts_.state.profileFile;
    const auto read = [&](const char* key) { return profile.read("Window", key); };
    setDark(read("Background").value_or("dark") != "light");
    view_->setSnaps({base::leadingInt(read("Snaps").value_or("35"))});
    ortho_->setChecked(read("Ortho").value_or("0") == "1");
    commands_->line().setPast(qt(read("Typed").value_or("")).split('\n', Qt::SkipEmptyParts));
    buildMenus();
    if (const auto geometry = read("Geometry"))
        restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(*geometry)));
    if (const auto panels = read("Panels")) // the tool bar's place too
        restoreState(QByteArray::fromBase64(QByteArray::fromStdString(*panels)));
}

void MainWindow::keep() {
    host::Profile& profile = parts_.state.profileFile;
    profile.write("Window", "Geometry", saveGeometry().toBase64().toStdString());
    profile.write("Window", "Panels", saveState().toBase64().toStdString());
    profile.write("Window", "Background", dark_ ? "dark" : "light");
    profile.write("Window", "Snaps", std::to_string(view_->snaps().bits));
    profile.write("Window", "Ortho", view_->ortho() ? "1" : "0");
    const QStringList& typed = commands_->line().past();
    const QStringList last = typed.mid(std::max<qsizetype>(0, typed.size() - kMostTypedKept));
    profile.write("Window", "Typed", utf8(last.join('\n')));
}

// --- around each wait
// -----------------------------------------------------------------------------

void MainWindow::waitBegins() {
    commandEnds(); // drawings that came without a command
    showDocuments();
    commands_->showPrompt(parts_.board.current());
    view_->refresh();
    layers_->show(parts_.state.workspace.database());
    showSelection();
    if (menu_)
        menu_->refresh(parts_.lines.atCommandPrompt());
}

void MainWindow::waitEnds() {
    commands_->showBusy();
}

void MainWindow::commandEnds() {
    for (const std::filesystem::path& opened :
         drawings_.note(parts_.state.workspace, parts_.recorder.size()))
        addRecent(parts_.state.profileFile, opened);
}

QString MainWindow::tabText(const console::Document& document) const {
    return qt(document.name) + (document.database->modified() ? "*" : "");
}

void MainWindow::showDocuments() {
    const console::Workspace& workspace = parts_.state.workspace;
    const auto count = static_cast<int>(workspace.documents().size());
    while (tabs_->count() > count)
        tabs_->removeTab(tabs_->count() - 1);
    while (tabs_->count() < count)
        tabs_->addTab({});
    for (int k = 0; k < count; ++k) {
        const console::Document& document = *workspace.documents()[static_cast<std::size_t>(k)];
        tabs_->setTabText(k, tabText(document));
        tabs_->setTabToolTip(k, qt(document.database->path().string()));
        if (&document == &workspace.current())
            tabs_->setCurrentIndex(k);
    }
    setWindowTitle(tabText(workspace.current()) + " - Tessaran");
}

void MainWindow::showCursor(const std::optional<host::Point3>& at) {
    coordinates_->setText(
        at ? qt(fmt::format("X {:.3f}   Y {:.3f}   Z {:.3f}", at->x, at->y, at->z)) : QString());
    const PromptState& prompt = parts_.board.current();
    if (prompt.statusAt)
        statusBar()->showMessage(at ? qt(prompt.statusAt(*at)) : QString(), kStatusMilliseconds);
}

// --- the window itself
// ----------------------------------------------------------------------------

void MainWindow::closeEvent(QCloseEvent* event) {
    if (parts_.lines.ended())
        return event->accept();
    event->ignore();
    run({"QUIT"});
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    QStringList files;
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile())
            files.push_back(url.toLocalFile());
    openFiles(files);
    event->acceptProposedAction();
}

} // namespace tessaran::desktop
