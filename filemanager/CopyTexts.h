// What the copy says about itself.
#pragma once

#include "filemanager/CopyLoop.h"

#include <functional>
#include <string>

std::string CopiedSoFarText(std::size_t done, std::size_t total);

// The path, or as much of its end as `fits` admits of the whole text. A shorter text must fit where a longer one does.
std::string CurrentFileText(const std::string& path, const std::function<bool(const std::string&)>& fits);

// One line for each error; empty when there is none. `channelText` gives the words for a code.
std::string CopyErrorsText(const std::vector<TCOPYERROR>& errors, const std::vector<TFILEENTRY>& files,
                           const std::function<std::string(std::int32_t)>& channelText);
