#pragma once

// One open drawing: entities of model space in drawing order, tables, and the journal that undoes
// them. It implements the host's port to a drawing; drawing files are read into it and written from
// it by the file layer (DatabaseBuilder fills it without journal).

#include "drawing/records.h"
#include "drawing/undo.h"
#include "host/drawing.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tessaran::drawing {

class SpatialIndex;

// What the screen shows of the drawing: a window of pixels on world coordinates.
struct View {
    host::Point2 centre{50.0, 31.25};
    double height = 62.5; // drawing units
    int widthPixels = 1600;
    int heightPixels = 1000;

    double unitsPerPixel() const { return height / heightPixels; }
    host::Box2 box() const;
};

class Database final : public host::Drawing {
  public:
    Database(); // empty: layer "0", the standard linetypes
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database() override;

    // --- the port (host/drawing.h) ---------------------------------------------------------
    // Entities on locked layers refuse modify, erase and setXData; adding to them is allowed.
    std::vector<host::EntityId> select(const host::SelectionFilter& filter) const override;
    std::vector<host::EntityId> select(const host::SelectionShape& shape,
                                       const host::SelectionFilter& filter) const override;
    const host::Entity* find(host::EntityId id) const override;
    host::EntityId lastEntity() const override;
    std::optional<host::Box2> extents(host::EntityId id) const override;

    base::Result<host::EntityId> add(host::Entity entity) override;
    base::Result<void> modify(const host::Entity& entity) override; // the kind cannot change
    bool erase(host::EntityId id) override;

    std::vector<host::Layer> layers() const override;
    std::optional<host::Layer> layer(std::string_view name) const override;
    base::Result<void> createLayer(const host::Layer& layer) override;
    base::Result<void> modifyLayer(const host::Layer& layer) override;
    bool hasLinetype(std::string_view name) const override;
    std::string currentLayer() const override;
    base::Result<void> setCurrentLayer(std::string_view name) override;

    base::Result<void> setGroup(const std::string& name,
                                const std::vector<host::EntityId>& members) override;
    std::vector<std::string> groups() const override;
    std::vector<host::EntityId> group(std::string_view name) const override;

    base::Result<void> setXData(host::EntityId id, const std::string& application,
                                const std::vector<host::XDataItem>& items) override;
    std::optional<std::vector<host::XDataItem>> xdata(host::EntityId id,
                                                      std::string_view application) const override;

    Record readRecord(std::string_view dictionary, std::string_view key) const override;
    base::Result<void> writeRecord(const std::string& dictionary, const std::string& key,
                                   const std::vector<std::string>& texts) override;

    // --- what a drawing has beside the port ----------------------------------------------------
    const Ucs& ucs() const { return tables_.ucs; }
    // The axes are made unit vectors at right angles (the Y axis is turned); parallel or zero axes
    // are refused.
    base::Result<void> setUcs(const Ucs& ucs);
    base::Result<void> setVariable(const std::string& name, const host::VariableValue& value);

    const std::filesystem::path& path() const { return path_; } // empty: never saved
    void setPath(std::filesystem::path path) { path_ = std::move(path); }

    // The view shown; without one set, the default view on the drawing's extents.
    View view() const;
    void setView(const View& view) { view_ = view; }
    // Extents of all that is shown; far-off junk is left out (extents.h).
    host::Box2 extents() const;

    // --- reading for the file layer, the scene and selections ----------------------------------
    const EntityRecord* record(host::EntityId id) const;
    std::size_t entityCount() const { return live_; }
    template <class Visit> // void(const EntityRecord&), in drawing order
    void forEachEntity(const Visit& visit) const {
        for (const Slot& slot : slots_)
            if (slot.record)
                visit(*slot.record);
    }
    const LayerRecord* layerRecord(std::string_view name) const;
    const Tables& tables() const { return tables_; }
    const std::vector<LinetypeRecord>& linetypes() const { return linetypes_; }
    // The same with the extents of what each shows, widths included; from the spatial index.
    void forEachBox(const std::function<void(const EntityRecord&, const host::Box2&)>& visit) const;
    // Live entities whose extents may meet the box, in drawing order.
    std::vector<const EntityRecord*> near(const host::Box2& box) const;
    const Block* block(std::string_view name) const;
    std::size_t blockCount() const { return blocks_.size(); }
    const std::string& version() const { return version_; } // "AC1015", ...
    const std::shared_ptr<const SourceFile>& source() const { return source_; }
    // The smallest handle that no object has; never goes back.
    std::uint64_t nextHandle() const { return nextHandle_; }

    // --- commands ------------------------------------------------------------------------------
    // A change outside a command is a step of its own. Commands nest; only the outermost one
    // counts, and its name is shown. endCommand() tells whether anything changed; a command
    // without changes leaves no trace. rollBack() ends the whole command and takes all of it back.
    void beginCommand(std::string name);
    bool endCommand();
    void rollBack();
    bool inCommand() const { return depth_ > 0; }

    // Not while a command runs. The name of what was undone or redone; nothing when there is none.
    std::optional<std::string> undo();
    std::optional<std::string> redo();
    std::vector<std::string> undoNames() const; // the newest last
    std::vector<std::string> redoNames() const; // the next one last

    // A number for the drawing's content: undo brings the earlier number back, no two contents of
    // a drawing share one. Saving and autosaving compare it.
    std::uint64_t state() const { return state_; }
    // Goes up with every single change, inside a command too: what is shown is out of date.
    std::uint64_t revision() const { return revision_; }
    bool modified() const { return state_ != savedState_; }
    void markSaved() { savedState_ = state_; }
    // The content came from elsewhere than the drawing's file: there is something to save.
    void markUnsaved() { savedState_ = kNeverSaved; }

  private:
    friend class DatabaseBuilder;

    static constexpr std::uint64_t kNeverSaved = ~std::uint64_t{0};

    // Entities keep their slot for good, so slots stand in drawing order, whatever is undone.
    struct Slot {
        std::unique_ptr<EntityRecord> record; // null: erased or undone
        std::uint64_t touched = 0;            // number of the last command that journalled it
    };

    std::size_t slotOf(host::EntityId id) const;
    base::Result<void> checkEditable(host::EntityId id) const;
    base::Result<void> checkCommon(const host::Entity& entity, const host::Entity* before) const;
    base::Result<void> checkLayer(const host::Layer& layer) const;
    void assignLayer(EntityRecord& record) const; // its index, and the name as the table spells it
    std::unique_ptr<EntityRecord> replace(std::size_t slot, std::unique_ptr<EntityRecord> record);
    void journalSlot(std::size_t slot, std::unique_ptr<EntityRecord> before);
    Tables& changeTables();
    void swapWith(CommandRecord& command);
    std::optional<std::uint32_t> layerIndex(std::string_view name) const;
    void rebuildLayerIndex();
    const SpatialIndex& index() const; // brought up to date
    void registerApplication(const std::string& application);

    std::vector<Slot> slots_;
    std::unordered_map<std::uint64_t, std::size_t> slotOfHandle_;
    std::size_t live_ = 0;

    Tables tables_;
    std::unordered_map<std::string, std::uint32_t> layerOfName_; // lowered name
    std::vector<LinetypeRecord> linetypes_;
    std::unordered_map<std::string, Block> blocks_; // lowered name

    std::string version_ = "AC1015";
    std::shared_ptr<const SourceFile> source_;
    std::filesystem::path path_;
    std::optional<View> view_;
    std::uint64_t nextHandle_ = 1;

    std::optional<CommandRecord> open_;
    int depth_ = 0;
    std::uint64_t commandNumber_ = 0;
    std::vector<CommandRecord> done_;
    std::vector<CommandRecord> undone_;
    std::uint64_t state_ = 0;
    std::uint64_t lastState_ = 0;
    std::uint64_t savedState_ = 0;
    std::uint64_t revision_ = 0;

    mutable std::unique_ptr<SpatialIndex> index_;
};

} // namespace tessaran::drawing
