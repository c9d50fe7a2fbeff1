// Controls that are clicked: check boxes, radio buttons, drop-down lists, buttons.

#include "desktop/control_makers.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace tessaran::desktop {
namespace {

using Purpose = host::DialogSession::Purpose;

constexpr std::size_t kMostInOneLine = 44; // characters of radio buttons side by side

// "&" marks the mnemonic here as there; a label without an end colon reads better on a box.
QString clickText(const std::string& label) {
    return QString::fromStdString(label).trimmed();
}

class CheckView final : public ControlView {
  public:
    CheckView(DialogActions& actions, const DialogActions::Place& place)
        : ControlView(actions, place), box_(new QCheckBox(clickText(place.control->label))) {
        name(*box_, Purpose::check);
        QObject::connect(box_, &QCheckBox::clicked, box_, [this](bool on) {
            actions_.check(place_, on);
            refresh();
        });
    }

    QWidget* widget() override { return box_; }
    void refresh() override { box_->setChecked(session().text(control()) == "1"); }

  private:
    QCheckBox* box_;
};

class RadioView final : public ControlView {
  public:
    RadioView(DialogActions& actions, const DialogActions::Place& place)
        : ControlView(actions, place) {
        name(*frame_, Purpose::show);
        frame_->setObjectName(frame_->objectName() + " (buttons)");
        std::size_t length = 0;
        for (const std::string& option : control().options)
            length += option.size();
        auto* layout = new QBoxLayout(
            length <= kMostInOneLine ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, frame_);
        layout->setContentsMargins(0, 0, 0, 0);
        for (std::size_t k = 0; k < control().options.size(); ++k)
            layout->addWidget(makeButton(static_cast<int>(k)));
        layout->addStretch(1);
        QObject::connect(&group_, &QButtonGroup::idClicked, frame_, [this](int option) {
            DialogActions::Place chosen = place_;
            chosen.option = option;
            actions_.choose(chosen);
            refresh();
        });
    }

    QWidget* widget() override { return frame_; }
    void refresh() override {
        const QString chosen = text();
        group_.setExclusive(false); // so that none may be chosen
        for (QAbstractButton* button : group_.buttons())
            button->setChecked(QString::number(group_.id(button)) == chosen);
        group_.setExclusive(true);
    }
    void focus() override {
        QAbstractButton* chosen = group_.checkedButton();
        if (chosen == nullptr && !group_.buttons().isEmpty())
            chosen = group_.buttons().first();
        if (chosen != nullptr)
            chosen->setFocus(Qt::OtherFocusReason);
    }

  private:
    QRadioButton* makeButton(int option) {
        auto* button =
            new QRadioButton(clickText(control().options[static_cast<std::size_t>(option)]));
        name(*button, Purpose::choose, option);
        group_.addButton(button, option);
        return button;
    }

    QWidget* frame_ = new QWidget;
    QButtonGroup group_;
};

// Where new names may be typed, it is a field with a list beside it.
class DropListView final : public ControlView {
  public:
    DropListView(DialogActions& actions, const DialogActions::Place& place)
        : ControlView(actions, place) {
        name(*box_, Purpose::set);
        box_->setEditable(control().takesNewNames);
        box_->setInsertPolicy(QComboBox::NoInsert);
        box_->setMinimumContentsLength(12);
        QObject::connect(box_, &QComboBox::textActivated, box_, [this](const QString& choice) {
            if (QLineEdit* edit = box_->lineEdit())
                edit->setModified(false);
            actions_.set(place_, choice.toStdString());
            refresh();
        });
        if (QLineEdit* edit = box_->lineEdit())
            QObject::connect(edit, &QLineEdit::editingFinished, box_, [this] { commit(); });
    }

    QWidget* widget() override { return box_; }
    void commit() override {
        QLineEdit* edit = box_->lineEdit();
        if (edit == nullptr || !edit->isModified() || actions_.busy())
            return;
        edit->setModified(false);
        actions_.set(place_, edit->text().toStdString());
        refresh();
    }
    void refresh() override {
        if (box_->lineEdit() != nullptr && box_->lineEdit()->isModified())
            return; // what is being typed stays until it is handed on
        const QSignalBlocker blocker(box_);
        QStringList choices;
        for (const std::string& choice : control().choices())
            choices.append(QString::fromStdString(choice));
        if (choices != shown_) {
            box_->clear();
            box_->addItems(choices);
            shown_ = choices;
        }
        box_->setCurrentIndex(static_cast<int>(choices.indexOf(text())));
        if (QLineEdit* edit = box_->lineEdit())
            edit->setText(text());
    }
    void focus() override {
        box_->setFocus(Qt::OtherFocusReason);
        if (QLineEdit* edit = box_->lineEdit())
            edit->selectAll();
    }

  private:
    QComboBox* box_ = new QComboBox;
    QStringList shown_;
};

class ButtonView final : public ControlView {
  public:
    ButtonView(DialogActions& actions, const DialogActions::Place& place)
        : ControlView(actions, place), button_(new QPushButton(clickText(place.control->label))) {
        name(*button_, Purpose::press);
        button_->setAutoDefault(false);
        QObject::connect(button_, &QPushButton::clicked, button_,
                         [this] { actions_.press(place_); });
    }

    QWidget* widget() override { return button_; }
    void refresh() override {}

  private:
    QPushButton* button_;
};

} // namespace

MadeView makeCheckView(DialogActions& actions, const DialogActions::Place& place) {
    return std::make_unique<CheckView>(actions, place);
}

MadeView makeRadioView(DialogActions& actions, const DialogActions::Place& place) {
    return std::make_unique<RadioView>(actions, place);
}

MadeView makeDropListView(DialogActions& actions, const DialogActions::Place& place) {
    return std::make_unique<DropListView>(actions, place);
}

MadeView makeButtonView(DialogActions& actions, const DialogActions::Place& place) {
    return std::make_unique<ButtonView>(actions, place);
}

} // namespace tessaran::desktop
