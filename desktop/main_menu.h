#pragma once

// The host's own menus, and the pull-downs that the module handed over.

#include "console/command_stack.h"

#include <QAction>
#include <QMenu>
#include <vector>

namespace tessaran::desktop {

class MainWindow;

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

    MainWindow& window_;
    QMenu* recent_ = nullptr;
    QAction* undo_ = nullptr;
    QAction* redo_ = nullptr;
};

} // namespace tessaran::desktop
