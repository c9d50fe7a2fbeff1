#pragma once

// The module's data of each open drawing. The host keeps one slot a drawing and makes its content
// on first use through the factory that the module gave; what it holds is the module's matter
// (app/document_data.h). Pages below app/ reach their own record by its type.

#include "base/check.h"

#include <functional>
#include <memory>
#include <typeinfo>

namespace tessaran::host {

class DocumentData {
  public:
    virtual ~DocumentData() = default;
    // The record of that type, or null.
    virtual void* record(const std::type_info& type) = 0;
};

class DocumentSlot {
  public:
    using Factory = std::function<std::unique_ptr<DocumentData>()>;

    virtual ~DocumentSlot() = default;
    // Null: the module is unloaded, data of all drawings is dropped.
    virtual void setFactory(Factory factory) = 0;
    // The current drawing's data, made on first use; null without a factory.
    virtual DocumentData* data() = 0;
};

// The current drawing's record of a type that the module's data is known to hold.
template <class Record>
Record& documentRecord(DocumentSlot& slot) {
    DocumentData* data = slot.data();
    TESSARAN_CHECK(data != nullptr);
    void* record = data->record(typeid(Record));
    TESSARAN_CHECK(record != nullptr);
    return *static_cast<Record*>(record);
}

} // namespace tessaran::host
