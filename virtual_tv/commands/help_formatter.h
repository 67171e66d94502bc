#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <string>

#include "common/command_line.h"

namespace vxtv {

/// Help in lines of at most so many columns, broken between words. Says of an option what follows it, and no
/// more: what is required stands in the usage line.
class HelpFormatter : public vxcommon::HelpFormatter {
 public:
    explicit HelpFormatter(std::size_t columns);

    std::string make_description(const CLI::App* app) const override;
    std::string make_usage(const CLI::App* app, std::string name) const override;
    std::string make_footer(const CLI::App* app) const override;
    std::string make_subcommand(const CLI::App* verb) const override;
    std::string make_option(const CLI::Option* option, bool isPositional) const override;
    std::string make_option_opts(const CLI::Option* option) const override;

 private:
    std::string entry(const std::string& name, const std::string& description) const;

    std::size_t columns_;
    std::size_t nameColumns_;
};

}  // namespace vxtv
