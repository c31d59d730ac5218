#pragma once
// Numeric settings of the processing graph read from the environment.
namespace Qv::PxSettings {

// The value of the environment variable `name`, a whole number from 1 to
// `max`, or `defaultValue` when it is unset or empty. Anything else throws,
// naming the variable, the accepted range and what was found.
int readCount(char const* name, int defaultValue, int max);

} // namespace Qv::PxSettings
