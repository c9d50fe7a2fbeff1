#pragma once

// The host's own menus, the pull-downs that the module handed over, and the tool bar with the items
// that are wanted most.

#include "console/command_stack.h"

#include <QAction>
#include <QMenu>
#include <vector>

namespace tessaran::desktop {

class MainWindow;
enum class ToolIcon;

class MainMenu {
  public:
    explicit MainMenu(MainWindow& window);

    // Takes up what changes: names of undo and redo, recent files, what can be done.
    void refresh(bool atCommandPrompt);

  private:
    QAction* add(QMenu* menu, const QString& label, const QKeySequence& keys,
                 std::function<void()> run, const QString& help = {});
    QAction* addCommand(QMenu* menu, const QString& label, const QKeySequence& keys,
                        std::vector<std::string> lines, const QString& help = {});
    void buildFile();
    void buildEdit();
    void buildView();
    void buildSnaps(QMenu* menu);
    void buildDraw();
    void buildTools();
    void buildHelp();
    void addModuleItems(QMenu* menu, const std::vector<host::MenuItem>& items);
    void showRecent();
    void saveSession();
    void showGrid();
    void onBar(QAction* action, ToolIcon icon);
    void buildToolBar();

    MainWindow& window_;
    QMenu* recent_ = nullptr;
    QMenu* panels_ = nullptr;
    QAction* undo_ = nullptr;
    QAction* redo_ = nullptr;
    std::vector<QAction*> onBar_; // in the tool bar's order; null: a separator
};

} // namespace tessaran::desktop
