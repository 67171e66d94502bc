#include "packaging/cli_tree.h"

namespace vxpages {

namespace {

CliOption optionOf(const CLI::Option& option, const Words& words) {
    CliOption result;
    result.description = option.get_description();
    result.required = option.get_required();
    result.value = option.get_type_size() == 0 ? "" : option.get_type_name();
    if (option.get_positional()) {
        result.longName = option.get_name(true, false);
        return result;
    }
    if (!option.get_snames().empty()) {
        result.shortName = "-" + option.get_snames().front();
    }
    if (!option.get_lnames().empty()) {
        result.longName = "--" + option.get_lnames().front();
    }
    if (const auto found = words.find(result.longName); found != words.end()) {
        result.words = found->second;
    }
    return result;
}

}  // namespace

CliVerb treeOf(const CLI::App& app, const Words& words) {
    CliVerb verb{app.get_name(), app.get_description(), app.get_footer(), {}, {}, {}};
    for (const CLI::Option* const option : app.get_options()) {
        auto& list = option->get_positional() ? verb.operands : verb.options;
        list.push_back(optionOf(*option, words));
    }
    for (const CLI::App* const below : app.get_subcommands([](const CLI::App*) { return true; })) {
        verb.verbs.push_back(treeOf(*below, words));
    }
    return verb;
}

}  // namespace vxpages
