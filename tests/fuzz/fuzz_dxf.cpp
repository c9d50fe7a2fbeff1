// Any bytes as a drawing: refused, or read; what was read can be changed, written and read again.

#include "base/check.h"
#include "base/progress.h"
#include "drawing/database.h"
#include "drawing/dxf_load.h"
#include "drawing/dxf_save.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

using namespace tessaran;
using namespace tessaran::drawing;

namespace {

std::string written(const Database& database) {
    std::string out;
    // A file without the tables to add to is refused; that is an answer too.
    if (!writeDxf(database, [&](std::string_view bytes) { out += bytes; }))
        out.clear();
    return out;
}

std::size_t countAfterReading(const std::string& bytes) {
    Database database;
    base::NoProgress nobody;
    TESSARAN_CHECK(loadDxf(database, bytes, "again", nobody));
    return database.entityCount();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Database database;
    base::NoProgress nobody;
    const std::string bytes(reinterpret_cast<const char*>(data), size); // NOLINT
    const base::Result<LoadReport> report = loadDxf(database, bytes, "fuzz", nobody);
    if (!report)
        return 0;
    const std::string first = written(database);
    TESSARAN_CHECK(!first.empty());
    TESSARAN_CHECK(countAfterReading(first) == database.entityCount());

    // Everything changed that may be: typed entities lose a colour and are moved by the typed path.
    std::vector<host::Entity> all;
    database.forEachEntity([&](const EntityRecord& record) { all.push_back(record.entity); });
    for (std::size_t i = 0; i < all.size(); ++i) {
        host::Entity& entity = all[i];
        if (i % 5 == 4) {
            static_cast<void>(database.erase(entity.id));
            continue;
        }
        entity.colour = 3;
        if (auto* line = std::get_if<host::Line>(&entity.geometry))
            line->end.x += 1.0;
        if (auto* polyline = std::get_if<host::Polyline>(&entity.geometry))
            polyline->elevation += 1.0;
        if (auto* hatch = std::get_if<host::Hatch>(&entity.geometry))
            hatch->elevation += 1.0;
        if (auto* region = std::get_if<host::Region>(&entity.geometry))
            region->elevation += 1.0;
        if (auto* text = std::get_if<host::Text>(&entity.geometry))
            text->rotation += 0.25;
        static_cast<void>(database.modify(entity));
    }
    static_cast<void>(database.createLayer({"FUZZ", 3, "Continuous"}));
    static_cast<void>(database.writeRecord("FUZZ", "KEY", {"text"}));
    if (!all.empty())
        static_cast<void>(database.setGroup("FUZZ", {all[0].id}));
    if (const std::string second = written(database); !second.empty())
        TESSARAN_CHECK(countAfterReading(second) == database.entityCount());
    return 0;
}
