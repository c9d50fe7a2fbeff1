#include "desktop/property_panel.h"

#include "console/line.h"
#include "desktop/click_answers.h"
#include "desktop/colour_choice.h"
#include "desktop/entity_facts.h"
#include "desktop/qt_text.h"

#include <QFormLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <map>

namespace tessaran::desktop {
namespace {

constexpr const char* kVarious = "(various)";
constexpr int kValue = 1;                  // the column
constexpr std::size_t kMostCompared = 500; // objects whose common values are looked for

// What all of them have, or nothing.
template <class T, class Get>
std::optional<T> common(const std::vector<const drawing::EntityRecord*>& records, const Get& get) {
    std::optional<T> value;
    for (const drawing::EntityRecord* record : records) {
        const T one = get(record->entity);
        if (value && *value != one)
            return std::nullopt;
        value = one;
    }
    return value;
}

// Those that the others have too; what differs is told as various.
std::vector<Fact> sharedFacts(const std::vector<Fact>& some, const std::vector<Fact>& others) {
    std::vector<Fact> shared;
    for (const auto& [name, value] : some)
        for (const auto& [otherName, otherValue] : others)
            if (name == otherName)
                shared.emplace_back(name, value == otherValue ? value : kVarious);
    return shared;
}

void choose(QComboBox& box, const std::optional<std::string>& text) {
    if (!text && box.findText(kVarious) < 0)
        box.insertItem(0, kVarious);
    const int at = box.findText(text ? qt(*text) : QString(kVarious), Qt::MatchFixedString);
    box.setCurrentIndex(at);
}

QString titleOf(const std::vector<const drawing::EntityRecord*>& records) {
    if (records.empty())
        return "Nothing is selected";
    if (records.size() == 1)
        return qt(kindOf(records.front()->entity));
    return QString("%1 objects").arg(records.size());
}

} // namespace

PropertyPanel::PropertyPanel(Run run, QWidget* parent)
    : QWidget(parent), run_(std::move(run)), title_(new QLabel(this)), layer_(new QComboBox(this)),
      colour_(new QPushButton(this)), linetype_(new QComboBox(this)),
      facts_(new QTreeWidget(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);
    column->addWidget(title_);
    auto* form = new QFormLayout;
    form->addRow("&Layer", layer_);
    form->addRow("&Colour", colour_);
    form->addRow("Line&type", linetype_);
    column->addLayout(form);
    facts_->setObjectName("propertyFacts");
    facts_->setColumnCount(2);
    facts_->setHeaderLabels({"Property", "Value"});
    facts_->setRootIsDecorated(false);
    facts_->setAlternatingRowColors(true);
    facts_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    column->addWidget(facts_, 1);
    facts_->setEditTriggers(QAbstractItemView::NoEditTriggers); // but by a click on the value
    QObject::connect(facts_, &QTreeWidget::itemClicked, this,
                     [this](QTreeWidgetItem* item, int at) {
                         if (at == kValue && item->flags().testFlag(Qt::ItemIsEditable))
                             facts_->editItem(item, kValue);
                     });
    QObject::connect(facts_, &QTreeWidget::itemChanged, this,
                     [this](QTreeWidgetItem* item, int /*column*/) {
                         change(changedBy(utf8(item->text(0))), utf8(item->text(kValue)));
                     });
    QObject::connect(layer_, &QComboBox::textActivated, this,
                     [this](const QString& text) { change("LAyer", utf8(text)); });
    QObject::connect(linetype_, &QComboBox::textActivated, this,
                     [this](const QString& text) { change("LType", utf8(text)); });
    QObject::connect(colour_, &QPushButton::clicked, this, [this] {
        if (const auto chosen = chooseColour(this, presentColour_, true))
            change("Color",
                   *chosen == host::colour::kByLayer ? "ByLayer" : std::to_string(*chosen));
    });
    clear();
}

void PropertyPanel::clear() {
    layer_->clear();
    linetype_->clear();
    colour_->setText({});
    colour_->setIcon({});
    facts_->clear();
    for (QWidget* widget : std::initializer_list<QWidget*>{layer_, colour_, linetype_})
        widget->setEnabled(false);
    title_->setText(titleOf({}));
}

void PropertyPanel::fillLayers(const drawing::Database& database) {
    for (const host::Layer& layer : database.layers())
        layer_->addItem(colourIcon(layer.colour), qt(layer.name));
    linetype_->addItems({"ByLayer", "ByBlock"});
    for (const drawing::LinetypeRecord& linetype : database.linetypes())
        if (linetype_->findText(qt(linetype.name), Qt::MatchFixedString) < 0)
            linetype_->addItem(qt(linetype.name));
}

void PropertyPanel::show(const drawing::Database& database,
                         const std::vector<host::EntityId>& selection) {
    clear();
    selection_ = selection;
    std::vector<const drawing::EntityRecord*> records;
    for (const host::EntityId id : selection)
        if (const drawing::EntityRecord* record = database.record(id))
            records.push_back(record);
    title_->setText(titleOf(records));
    if (records.empty())
        return;
    for (QWidget* widget : std::initializer_list<QWidget*>{layer_, colour_, linetype_})
        widget->setEnabled(true);
    fillLayers(database);
    choose(*layer_, common<std::string>(records, [](const host::Entity& e) { return e.layer; }));
    choose(*linetype_,
           common<std::string>(records, [](const host::Entity& e) { return e.linetype; }));
    const auto colour = common<int>(records, [](const host::Entity& e) { return e.colour; });
    presentColour_ = colour.value_or(0);
    colour_->setText(colour ? colourName(*colour) : QString(kVarious));
    if (colour)
        colour_->setIcon(colourIcon(*colour));
    if (records.size() == 1)
        for (const auto& [name, value] : factsOf(*records.front()))
            addFact(name, value);
    else
        showSeveral(records);
}

// How many of each kind, and what can be changed of all of them.
void PropertyPanel::showSeveral(const std::vector<const drawing::EntityRecord*>& records) {
    std::map<std::string, int> kinds;
    for (const drawing::EntityRecord* record : records)
        ++kinds[kindOf(record->entity)];
    for (const auto& [kind, count] : kinds)
        addFact(kind, std::to_string(count));
    if (records.size() > kMostCompared)
        return;
    std::vector<Fact> shared = factsOf(*records.front());
    std::erase_if(shared, [](const Fact& fact) { return changedBy(fact.first).empty(); });
    for (const drawing::EntityRecord* record : records)
        shared = sharedFacts(shared, factsOf(*record));
    for (const auto& [name, value] : shared)
        addFact(name, value);
}

void PropertyPanel::addFact(const std::string& name, const std::string& value) {
    const QSignalBlocker blocker(facts_);
    auto* item = new QTreeWidgetItem({qt(name), qt(value)});
    if (!changedBy(name).empty()) {
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        item->setToolTip(kValue, "Click to change it");
    }
    facts_->addTopLevelItem(item);
}

void PropertyPanel::change(const std::string& property, const std::string& value) {
    if (value != kVarious && !selection_.empty())
        run_({"CHPROP", handlesLine(selection_), "", property, console::answerLine(value), ""});
}

} // namespace tessaran::desktop
