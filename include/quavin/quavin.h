#pragma once

/// @file
/// Includes the whole interface.
///
/// Pages that the headers mention, such as docs/errors.md, are installed in
/// share/doc/quavin_on_device_sdk.

#include "quavin/client.h"
#include "quavin/device.h"
#include "quavin/encryption.h"
#include "quavin/engine_info.h"
#include "quavin/engine_options.h"
#include "quavin/export.h"
#include "quavin/feature.h"
#include "quavin/files.h"
#include "quavin/logging.h"
#include "quavin/metadata.h"
#include "quavin/model.h"
#include "quavin/network.h"
#include "quavin/package_memory.h"
#include "quavin/registry.h"
#include "quavin/status.h"
#include "quavin/tensor.h"
#include "quavin/text.h"
#include "quavin/version.h"
