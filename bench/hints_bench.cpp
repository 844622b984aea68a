// What a hint costs, from the click down the whole chain to "No more logical hints available...".
#include <benchmark/benchmark.h>

#include "game/layout.h"
#include "hints/hints.h"
#include "support/scripted_desktop.h"

namespace bivouac {
namespace {
