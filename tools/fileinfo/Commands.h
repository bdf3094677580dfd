// The subcommands. Each Add* function declares one subcommand on the
// application, with its options and an example in its help; running it
// stores the exit code in `*exitCode`.
#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "Tool.h"

namespace fitool {

// The `--type` option every document subcommand shares.
struct TypeOption {
    std::string text;
    std::optional<EFileFormat> Get() const { return text.empty() ? std::nullopt : ParseFormatName(text); }
};
void AddTypeOption(CLI::App* sub, TypeOption& type);

void AddProps(CLI::App& app, int* exitCode);
void AddImages(CLI::App& app, int* exitCode);  // thumbnail, icon, dib
void AddText(CLI::App& app, int* exitCode);
void AddSet(CLI::App& app, int* exitCode);
void AddParts(CLI::App& app, int* exitCode);  // parts, cat
void AddScan(CLI::App& app, int* exitCode);
// `--no-external-links` on every subcommand declared so far.
void AddExternalLinksFlag(CLI::App& app);

// The `props --json` object of an open document.
nlohmann::ordered_json PropsJson(IFileInfo* info, const std::string& file, EFileFormat format);

// Dumps JSON as UTF-8, replacing bytes that are not.
std::string DumpJson(const nlohmann::ordered_json& j, int indent = -1);

}  // namespace fitool
