#pragma once

// Everything that the host offers for arrays.
#include "platform/host/Array.h"
#include "platform/host/ArrayComparison.h"
#include "platform/host/ArrayData.h"
#include "platform/host/ArrayText.h"
#include "platform/host/CellArray.h"
#include "platform/host/HostError.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"
