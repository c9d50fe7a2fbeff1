#pragma once

// Layers, and the entities on them.

#include "host/drawing.h"

#include <optional>
#include <string>
#include <vector>

namespace tessaran::host {

class Host;

// Where the system puts the objects it makes: boundaries, temporary polylines, labels.
inline constexpr const char* kWorkingLayer = "ZELK_Working_Layer";

// Type names of planar polylines, for selections.
inline const std::vector<std::string> kPolylineTypes{"LWPOLYLINE", "POLYLINE"};

// The name if the drawing has such a linetype, else "Continuous".
std::string linetypeOrContinuous(const Drawing& drawing, const std::string& name);

// Makes the layer when it is missing; an existing one stays as it is. False when that failed.
bool ensureLayer(Host& host, const std::string& name, int colour,
                 const std::string& linetype = "Continuous");

// Tells at the command line when it failed.
bool ensureWorkingLayer(Host& host);

// Asks at the command line for a new layer's name until one is free, and makes the layer. Nothing
// when the user gave none or it could not be made, which is told.
std::optional<std::string> askForNewLayer(Host& host);

// Asks at the command line for a list of layer names, typed or taken from objects that the user
// selects. Nothing when cancelled or empty.
std::optional<std::string> askForLayers(Host& host);

// Picks objects one by one and gives the names of their layers, each once, in the order picked,
// after those that are `chosen` already.
std::vector<std::string>
pickLayers(Host& host, std::vector<std::string> chosen = {},
           const std::string& message = "\nSelect any object in the layer");

// Entities of these types on these layers in drawing order; no layers: nothing (other than an
// empty selection filter, which means all).
std::vector<EntityId> entitiesOnLayers(Host& host, const std::vector<std::string>& layers,
                                       const std::vector<std::string>& types = {});

// Erases what is on the layer and gives the number of erased objects.
std::size_t eraseLayerObjects(Host& host, const std::string& layer);

// The names of all layers, in the drawing's order.
std::vector<std::string> layerNames(const Drawing& drawing);

} // namespace tessaran::host
