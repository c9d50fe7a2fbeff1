#pragma once

// The titles of a dialog's pages: tabs over the page, or a list beside it where they are many.

#include <QStringList>
#include <QWidget>

class QListWidget;
class QTabBar;

namespace tessaran::desktop {

class PageSelector final : public QWidget {
    Q_OBJECT
  public:
    explicit PageSelector(const QStringList& titles, QWidget* parent = nullptr);

    static constexpr int kMostTabs = 6;
    bool isTabs() const { return tabs_ != nullptr; }
    // Shows that page's title as the one in front; reports nothing.
    void setFront(int page);

  Q_SIGNALS:
    // The user wants that page; what is shown stays until setFront().
    void wanted(int page);

  private:
    void report(int page);

    QTabBar* tabs_ = nullptr;
    QListWidget* list_ = nullptr;
    int front_ = 0;
};

} // namespace tessaran::desktop
