#pragma once

// CLI11 takes seconds to compile: only the files that define or read options include it.
namespace CLI {
class App;
class Option;
class ParseError;
}  // namespace CLI
