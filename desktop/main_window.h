#pragma once

// The window: the drawing with its tabs, the command panel, layer and property panels, the status
// bar and the menus. It owns widgets; the program behind it is the session's.

#include "console/console_host.h"
#include "desktop/command_panel.h"
#include "desktop/drawing_view.h"
#include "desktop/recorded_drawings.h"
#include "desktop/status_meter.h"
#include "desktop/window_lines.h"

#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QTabBar>
#include <functional>

namespace tessaran::desktop {

class GridPanel;
class LayerPanel;
class MainMenu;
class PropertyPanel;

class MainWindow final : public QMainWindow {
  public:
    // What of the session it works with.
    struct Parts {
        console::HostState& state;
        WindowLines& lines;
        PromptBoard& board;
        Busy& busy;
        SessionRecorder& recorder;
    };
    explicit MainWindow(const Parts& parts);
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;
    ~MainWindow() override;

    DrawingView& view() { return *view_; }
    CommandPanel& commands() { return *commands_; }
    StatusMeter& meter() { return *meter_; }
    LayerPanel& layers() { return *layers_; }
    PropertyPanel& properties() { return *properties_; }
    GridPanel& grid() { return *grid_; }
    bool isDark() const { return dark_; }
    QAction* orthoAction() { return ortho_; }
    console::HostState& state() { return parts_.state; }

    // Whether a dialog is open, hidden or not; nothing else can be begun then.
    void setInDialog(std::function<bool()> inDialog) { inDialog_ = std::move(inDialog); }
    void buildMenus();

    // --- what users do
    // A command with its answers; false while a dialog is open or something computes.
    bool run(std::vector<std::string> command);
    // The same with the selected objects as the first answer, where there are some.
    bool runOnSelection(const std::string& command);
    void openFiles(const QStringList& files);
    void saveSessionScript(const QString& path);
    void setDark(bool dark);
    void showGrid(const QString& file); // empty: the one open, or asked for

    // What lasts from run to run: panels, background, snaps, the lines typed.
    void restore();
    void keep();

    // --- around each wait for a line
    void waitBegins();
    void waitEnds();
    // After each command: drawings may have come and gone.
    void commandEnds();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void buildStatusBar();
    void buildPanels();
    QDockWidget* addPanel(const QString& title, const char* name, QWidget* panel,
                          Qt::DockWidgetArea area);
    void showSelection();
    void listen();
    void escape();
    void submit(const std::string& typed);
    void showDocuments();
    void showCursor(const std::optional<host::Point3>& at);
    void closeTab(int index);
    QString tabText(const console::Document& document) const;

    Parts parts_;
    std::string lastCommand_; // typed or chosen last, for Enter to repeat
    QTabBar* tabs_;
    DrawingView* view_;
    CommandPanel* commands_;
    StatusMeter* meter_;
    QLabel* coordinates_;
    LayerPanel* layers_ = nullptr;
    PropertyPanel* properties_ = nullptr;
    GridPanel* grid_ = nullptr;
    QDockWidget* gridDock_ = nullptr;
    QAction* ortho_ = nullptr;
    bool dark_ = true;
    std::unique_ptr<MainMenu> menu_;
    std::function<bool()> inDialog_;
    RecordedDrawings drawings_;
};

} // namespace tessaran::desktop
