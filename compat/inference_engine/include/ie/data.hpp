// The inputs and outputs of a network.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "ie/tensor_desc.hpp"

namespace InferenceEngine {

/**
 * One port of a network. The network shares it with its callers: a precision set here persists and
 * applies to the next LoadNetwork of that network. Not thread-safe.
 */
class Data {
public:
    Data(std::string name, TensorDesc desc) : name_(std::move(name)), desc_(std::move(desc)) {}

    const std::string& getName() const noexcept { return name_; }
    const TensorDesc& getTensorDesc() const noexcept { return desc_; }
    const Precision& getPrecision() const noexcept { return desc_.getPrecision(); }
    void setPrecision(const Precision& precision) noexcept { desc_.setPrecision(precision); }
    const SizeVector& getDims() const noexcept { return desc_.getDims(); }
    Layout getLayout() const noexcept { return desc_.getLayout(); }

private:
    std::string name_;
    TensorDesc desc_;
};

using DataPtr = std::shared_ptr<Data>;
using CDataPtr = std::shared_ptr<const Data>;

/** An input of a network, described by its Data; accessors throw "Data is empty!" without one. */
class InputInfo {
public:
    using Ptr = std::shared_ptr<InputInfo>;
    using CPtr = std::shared_ptr<const InputInfo>;

    const std::string& name() const { return data().getName(); }
    const TensorDesc& getTensorDesc() const { return data().getTensorDesc(); }
    Precision getPrecision() const { return data().getPrecision(); }
    void setPrecision(const Precision& precision) { data().setPrecision(precision); }
    Layout getLayout() const { return data().getLayout(); }

    DataPtr getInputData() const { return data_; }
    void setInputData(const DataPtr& data) { data_ = data; }

private:
    Data& data() const;

    DataPtr data_;
};

/** By name, in name order. */
using InputsDataMap = std::map<std::string, InputInfo::Ptr>;
using OutputsDataMap = std::map<std::string, DataPtr>;
using ConstInputsDataMap = std::map<std::string, InputInfo::CPtr>;
using ConstOutputsDataMap = std::map<std::string, CDataPtr>;

}  // namespace InferenceEngine
