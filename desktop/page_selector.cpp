#include "desktop/page_selector.h"

#include <QListWidget>
#include <QSignalBlocker>
#include <QTabBar>
#include <QVBoxLayout>

namespace tessaran::desktop {

PageSelector::PageSelector(const QStringList& titles, QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    if (titles.size() <= kMostTabs) {
        tabs_ = new QTabBar(this);
        tabs_->setObjectName("pages");
        tabs_->setExpanding(false);
        for (const QString& title : titles)
            tabs_->addTab(title);
        layout->addWidget(tabs_);
        connect(tabs_, &QTabBar::currentChanged, this, &PageSelector::report);
        return;
    }
    list_ = new QListWidget(this);
    list_->setObjectName("pages");
    list_->addItems(titles);
    list_->setFixedWidth(list_->sizeHintForColumn(0) + 24);
    layout->addWidget(list_);
    setFront(0);
    connect(list_, &QListWidget::currentRowChanged, this, &PageSelector::report);
}

void PageSelector::setFront(int page) {
    front_ = page;
    if (tabs_ != nullptr) {
        const QSignalBlocker blocker(tabs_);
        tabs_->setCurrentIndex(page);
    } else {
        const QSignalBlocker blocker(list_);
        list_->setCurrentRow(page);
    }
}

// The page in front may not let go: until it has, its title stays the chosen one.
void PageSelector::report(int page) {
    if (page == front_)
        return;
    setFront(front_);
    Q_EMIT wanted(page);
}

} // namespace tessaran::desktop
