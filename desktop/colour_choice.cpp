#include "desktop/colour_choice.h"

#include "drawing/colour_table.h"
#include "host/entity.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <array>

namespace tessaran::desktop {
namespace {

constexpr int kSwatch = 14; // pixels

QColor shown(int colour) {
    const drawing::Rgb rgb = drawing::tableColour(colour);
    return {rgb.red, rgb.green, rgb.blue};
}

QToolButton* swatch(QDialog& dialog, int colour, int present, std::optional<int>& chosen) {
    auto* button = new QToolButton(&dialog);
    button->setFixedSize(20, 18);
    button->setToolTip(colourName(colour));
    button->setStyleSheet(QString("QToolButton { background: %1; border: %2; } "
                                  "QToolButton:hover { border: 2px solid palette(highlight); }")
                              .arg(shown(colour).name(), colour == present
                                                             ? "2px solid palette(text)"
                                                             : "1px solid palette(mid)"));
    QObject::connect(button, &QToolButton::clicked, &dialog, [&dialog, &chosen, colour] {
        chosen = colour;
        dialog.accept();
    });
    return button;
}

// The nine standard colours and greys above, the hues below: a column a hue, its shades downwards.
void fill(QGridLayout& grid, QDialog& dialog, int present, std::optional<int>& chosen) {
    for (int colour = 1; colour <= 9; ++colour)
        grid.addWidget(swatch(dialog, colour, present, chosen), 0, colour - 1);
    for (int colour = 250; colour <= 255; ++colour)
        grid.addWidget(swatch(dialog, colour, present, chosen), 0, colour - 250 + 12);
    grid.setRowMinimumHeight(1, 8);
    for (int colour = 10; colour <= 249; ++colour)
        grid.addWidget(swatch(dialog, colour, present, chosen), 2 + colour % 10, colour / 10 - 1);
}

} // namespace

QIcon colourIcon(int colour) {
    QPixmap picture(kSwatch, kSwatch);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setPen(QColor(120, 120, 120));
    painter.setBrush(colour == host::colour::kByLayer ? QColor(Qt::transparent) : shown(colour));
    painter.drawRect(0, 0, kSwatch - 1, kSwatch - 1);
    painter.end();
    return QIcon(picture);
}

QString colourName(int colour) {
    static constexpr std::array kNames{"Red", "Yellow", "Green", "Cyan", "Blue", "Magenta"};
    if (colour == host::colour::kByLayer)
        return "ByLayer";
    if (colour == host::colour::kByBlock)
        return "ByBlock";
    if (colour >= 1 && colour <= static_cast<int>(kNames.size()))
        return QString("%1 %2").arg(colour).arg(kNames[static_cast<std::size_t>(colour) - 1]);
    return QString::number(colour);
}

std::optional<int> chooseColour(QWidget* parent, int present, bool byLayer) {
    std::optional<int> chosen;
    QDialog dialog(parent);
    dialog.setWindowTitle("Colour");
    dialog.setObjectName("colourDialog");
    auto* column = new QVBoxLayout(&dialog);
    auto* grid = new QGridLayout;
    grid->setSpacing(2);
    fill(*grid, dialog, present, chosen);
    column->addLayout(grid);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    if (byLayer) {
        auto* button = buttons->addButton("By&Layer", QDialogButtonBox::ActionRole);
        QObject::connect(button, &QPushButton::clicked, &dialog, [&] {
            chosen = host::colour::kByLayer;
            dialog.accept();
        });
    }
    column->addWidget(buttons);
    dialog.exec();
    return chosen;
}

} // namespace tessaran::desktop
