#include "app/document_data.h"

namespace tessaran::app {

void* CDocData::record(const std::type_info& type) {
    if (type == typeid(grid::BaseGrid))
        return &baseGrid_;
    if (type == typeid(rfri::CategoryRecords))
        return &rfriCategories_;
    return nullptr;
}

} // namespace tessaran::app
