#include "lineup/description/readLineup.h"

#include <filesystem>

#include "lineup/description/completeLineup.h"
#include "lineup/description/lineupFields.h"
#include "resources/jsonFile.h"

namespace quiravent::desktop::lineup {

namespace {

void makeAbsolute(std::string& path, const std::filesystem::path& folder) {
    if (!path.empty()) path = (folder / path).string();
}

}  // namespace

Lineup readLineup(const std::string& file) {
    Lineup lineup;
    const Place place(file);
    readObject(readJsonFile(file, "the line-up"), lineupFields(), place, lineup);
    const std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
    makeAbsolute(lineup.font, folder);
    for (Service& service : lineup.services) makeAbsolute(service.media, folder);
    completeLineup(lineup, place);
    return lineup;
}

}  // namespace quiravent::desktop::lineup
