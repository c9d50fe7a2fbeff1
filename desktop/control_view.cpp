#include "desktop/control_view.h"

#include "desktop/control_makers.h"

namespace tessaran::desktop {

using host::ControlKind;

QString ControlView::text() const {
    return QString::fromStdString(session().text(control()));
}

void ControlView::name(QWidget& widget, host::DialogSession::Purpose purpose, int option) const {
    DialogActions::Place place = place_;
    place.option = option;
    const QString label = QString::fromStdString(session().labelOf(place, purpose));
    widget.setObjectName(label);
    if (!control().label.empty())
        widget.setAccessibleName(label);
    widget.setToolTip(QString::fromStdString(control().toolTip));
}

QString ControlView::captionText() const {
    QString text = QString::fromStdString(host::labelWithUnit(control())).trimmed();
    while (text.endsWith(':'))
        text = text.chopped(1).trimmed();
    return text + ":";
}

void ControlView::refreshAll() {
    refresh();
    const bool enabled = session().isEnabled(control());
    widget()->setEnabled(enabled);
    if (caption_ == nullptr)
        return;
    caption_->setEnabled(enabled);
    if (control().unit)
        caption_->setText(captionText());
}

std::unique_ptr<ControlView> makeControlView(DialogActions& actions,
                                             const DialogActions::Place& place) {
    switch (place.control->kind) {
    case ControlKind::text:
        return makeTextView(actions, place);
    case ControlKind::names:
        return makeNamesView(actions, place);
    case ControlKind::information:
        return makeInformationView(actions, place);
    case ControlKind::check:
        return makeCheckView(actions, place);
    case ControlKind::radio:
        return makeRadioView(actions, place);
    case ControlKind::dropList:
        return makeDropListView(actions, place);
    case ControlKind::list:
        return makeListView(actions, place);
    case ControlKind::button:
        return makeButtonView(actions, place);
    case ControlKind::link:
        return makeLinkView(actions, place);
    }
    return nullptr;
}

} // namespace tessaran::desktop
