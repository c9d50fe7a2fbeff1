#pragma once

// System variables: those of the current drawing and its view, and those of the running program.

#include "console/workspace.h"
#include "host/host.h"

#include <map>
#include <string>

namespace tessaran::console {

class Variables final : public host::SystemVariables {
  public:
    explicit Variables(Workspace& workspace);

    std::optional<host::VariableValue> get(std::string_view name) const override;
    // A number goes into an integer variable only when it is whole; others of another kind, and
    // read-only ones, are refused.
    base::Result<void> set(std::string_view name, const host::VariableValue& value) override;

    // Every name that get() knows, in alphabetical order.
    std::vector<std::string> names() const;

  private:
    std::optional<host::VariableValue> derived(const std::string& name) const;
    base::Result<void> setDerived(const std::string& name, const host::VariableValue& value);

    Workspace& workspace_;
    std::map<std::string, host::VariableValue> own_; // of the program
};

} // namespace tessaran::console
