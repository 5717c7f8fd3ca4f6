// The 2019-2020 Inference Engine object interface, as far as this library uses it, implemented on
// the C interface of the maintained OpenVINO runtime. No header of that runtime is included here.
//
// Names and signatures are those of the original interface, so that code written against this
// header also compiles against an installation of that era.
#pragma once

#include "ie/allocator.hpp"
#include "ie/blob.hpp"
#include "ie/common.hpp"
#include "ie/core.hpp"
#include "ie/data.hpp"
#include "ie/exception.hpp"
#include "ie/executable_network.hpp"
#include "ie/infer_request.hpp"
#include "ie/locked_memory.hpp"
#include "ie/network.hpp"
#include "ie/network_reader.hpp"
#include "ie/parameter.hpp"
#include "ie/precision.hpp"
#include "ie/release.hpp"
#include "ie/tensor_desc.hpp"
#include "ie/typed_blob.hpp"
#include "ie/version.hpp"
