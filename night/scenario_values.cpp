/// Values that occur in several places of a scenario file.
#include "night/scenario_values.h"

#include "night/scenario_times.h"

namespace noctara {

namespace {

/// Readers of property lists recurse, so deeper lists could overflow their stack.
constexpr int deepestSettings = 32;

PropertyList setting(const TomlValue& value, const TimeZone& zone, int depth);

Dictionary dictionary(const TomlValue& value, const TimeZone& zone, int depth) {
    Dictionary dictionary;
    for (const TomlValue& entry : value.entries("write a table of settings"))
        dictionary.set(entry.name(), setting(entry, zone, depth + 1));
    return dictionary;
}

PropertyList setting(const TomlValue& value, const TimeZone& zone, int depth) {
    if (depth > deepestSettings)
        value.refuse("settings are nested too deeply",
                     "at most " + std::to_string(deepestSettings) + " levels are accepted");
    const toml::node& node = value.node();
    switch (node.type()) {
    case toml::node_type::boolean:
        return node.as_boolean()->get();
    case toml::node_type::integer:
        return node.as_integer()->get();
    case toml::node_type::floating_point:
        return node.as_floating_point()->get();
    case toml::node_type::string:
        return node.as_string()->get();
    case toml::node_type::table:
        return dictionary(value, zone, depth);
    case toml::node_type::array: {
        Array array;
        for (const TomlValue& element : value.elements({}))
            array.push_back(setting(element, zone, depth + 1));
        return array;
    }
    default:
        return instantOfAnyDateTime(value, zone);
    }
}

} // namespace

Posture readPosture(const TomlValue& value) {
    const auto* array = value.node().as_array();
    if (!array)
        return value.oneOf(postureWords);
    if (array->size() != 3)
        value.refuse(value.name() + " has " + std::to_string(array->size()) + " elements",
                     "write the three numbers x, y and z, in g");
    const auto axes = value.elements({});
    // A negative zero becomes zero.
    return Acceleration{axes[0].real() + 0.0, axes[1].real() + 0.0, axes[2].real() + 0.0};
}

Dictionary readSettings(const TomlValue& value, const TimeZone& zone) {
    return dictionary(value, zone, 0);
}

} // namespace noctara
