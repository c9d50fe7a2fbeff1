#pragma once

// The host services: what the system's commands do with the host again and again, written once
// over the port. Each tells its failure at the command line and gives a failure value; none throws.

#include "host/services_dialogs.h"   // yes or no, picks, waits, the file dialog
#include "host/services_entities.h"  // making polylines, hatches, boundaries
#include "host/services_layers.h"    // layers, and the entities on them
#include "host/services_records.h"   // the system's dictionary
#include "host/services_selection.h" // the standard selection
#include "host/services_view.h"      // command echo, view rectangle
