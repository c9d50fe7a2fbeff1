#pragma once

// What the module keeps of each open drawing while it is open. The records are defined by the
// folders that use them; this puts them together.

#include "grid/base_grid.h"
#include "host/document_data.h"
#include "rfri/categories.h"

namespace tessaran::app {

class CDocData final : public host::DocumentData {
  public:
    void* record(const std::type_info& type) override;

  private:
    grid::BaseGrid baseGrid_;
    rfri::CategoryRecords rfriCategories_;
};

} // namespace tessaran::app
