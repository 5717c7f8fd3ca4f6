// Small networks as text.
#pragma once

#include <string>

namespace InferenceEngine {

/** One input "x" and one output "y" of four elements, each twice the input's. */
std::string doublingNetwork(int version = 11);

/** An input "x" of four elements of this type; the output "y" has the same elements twice over. */
std::string repeatingNetwork(const std::string& type, int version = 11);

/** The output "y" is the input "x" plus a constant; four floats each, the weights too. */
std::string addingNetwork();

}  // namespace InferenceEngine
