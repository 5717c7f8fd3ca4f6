#include <utility>

#include "quavin/feature.h"

namespace VelmoraQuavin {
namespace {

// The "unit8" passed below is what hosts have always seen, so it stays.
[[noreturn]] void throwWrongType(const char* requested, QuavinFeatureType actual) {
    throw InvalidTypeException(String("Attempt to interpret a feature as ") + requested +
                               " while the feature's type is " + GetQuavinFeatureTypeName(actual));
}

}  // namespace

QuavinFeature::QuavinFeature(ModelFeatureDescriptor descriptor)
    : descriptor_(std::move(descriptor)) {}

QuavinFeature::~QuavinFeature() = default;

bool& QuavinFeature::asBool() {
    throwWrongType("bool", type());
}
const bool& QuavinFeature::asBool() const {
    throwWrongType("bool", type());
}

const unsigned char& QuavinFeature::asUInt8() const {
    throwWrongType("unit8", type());
}
unsigned char& QuavinFeature::asUInt8() {
    throwWrongType("unit8", type());
}

const int64& QuavinFeature::asInt64() const {
    throwWrongType("int64", type());
}
int64& QuavinFeature::asInt64() {
    throwWrongType("int64", type());
}

const double& QuavinFeature::asDouble() const {
    throwWrongType("double", type());
}
double& QuavinFeature::asDouble() {
    throwWrongType("double", type());
}

const String& QuavinFeature::asString() const {
    throwWrongType("string", type());
}
String& QuavinFeature::asString() {
    throwWrongType("string", type());
}

std::shared_ptr<const ITensor> QuavinFeature::asTensor() const {
    throwWrongType("tensor", type());
}
std::shared_ptr<ITensor> QuavinFeature::asTensor() {
    throwWrongType("tensor", type());
}

std::shared_ptr<const VideoFrame> QuavinFeature::asVideoFrame() const {
    throwWrongType("video frame", type());
}
std::shared_ptr<VideoFrame> QuavinFeature::asVideoFrame() {
    throwWrongType("video frame", type());
}

}  // namespace VelmoraQuavin
