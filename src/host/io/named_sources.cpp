#include "host/io/named_sources.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace Ombe {
namespace {

namespace fs = std::filesystem;

std::string lowered(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

/// Why a plug-in could not open an entry that has a subtitle's ending; empty if it might.
const char* obstacle(const fs::directory_entry& entry, const std::string& extension) {
  std::error_code ignored;
  if (!entry.is_regular_file(ignored)) return "is not a regular file";
  if (entry.path().filename().string().starts_with("._")) {
    return "holds what another system keeps beside a file";
  }
  if (lowered(extension) != extension) return "its name must end in .sub or .txt, in small letters";
  return "";
}

class FolderSearch {
 public:
  explicit FolderSearch(std::string folder) : folder_(std::move(folder)), folders_{folder_} {}

  std::vector<NamedSource> run() {
    while (!folders_.empty()) {
      const fs::path next = std::move(folders_.back());
      folders_.pop_back();
      search(next);
    }
    if (found_.empty()) add(Kind::kSkipped, folder_, "holds no file that ends in .sub or .txt");
    std::ranges::sort(found_, {}, &NamedSource::path);
    return std::move(found_);
  }

 private:
  using Kind = NamedSource::Kind;

  void search(const fs::path& folder) {
    std::error_code error;
    fs::directory_iterator at(folder, error);
    for (const fs::directory_iterator end; !error && at != end; at.increment(error)) take(*at);
    if (error) add(Kind::kUnreadable, folder, "cannot be read: " + error.message());
  }

  void take(const fs::directory_entry& entry) {
    std::error_code ignored;
    if (entry.is_directory(ignored)) {
      if (entry.is_symlink(ignored)) {
        add(Kind::kSkipped, entry.path(), "is a link to a folder");
      } else {
        folders_.push_back(entry.path());
      }
      return;
    }
    const std::string extension = entry.path().extension().string();
    const std::string plain = lowered(extension);
    if (plain != ".sub" && plain != ".txt") return;
    std::error_code error;
    static_cast<void>(entry.status(error));  // of what a link leads to
    if (error) return add(Kind::kUnreadable, entry.path(), "cannot be read: " + error.message());
    const std::string reason = obstacle(entry, extension);
    add(reason.empty() ? Kind::kFound : Kind::kSkipped, entry.path(), reason);
  }

  void add(Kind kind, const fs::path& path, std::string reason) {
    found_.push_back({kind, path.string(), folder_, std::move(reason)});
  }

  std::string folder_;
  std::vector<fs::path> folders_;  // yet to be searched
  std::vector<NamedSource> found_;
};

/// The same for every name of one file.
std::string identityOf(const std::string& path) {
  std::error_code error;
  const fs::path canonical = fs::weakly_canonical(path, error);
  return error ? fs::absolute(path, error).lexically_normal().string() : canonical.string();
}

}  // namespace

std::vector<NamedSource> namedSources(const std::vector<std::string>& arguments) {
  std::vector<NamedSource> sources;
  for (const std::string& argument : arguments) {
    std::error_code ignored;
    if (argument == "-" || !fs::is_directory(argument, ignored)) {
      sources.push_back({NamedSource::Kind::kNamed, argument, "", ""});
    } else {
      auto found = FolderSearch(argument).run();
      std::move(found.begin(), found.end(), std::back_inserter(sources));
    }
  }
  std::unordered_set<std::string> seen;
  std::erase_if(sources, [&](const NamedSource& source) {
    return !seen.insert(source.path == "-" ? "-" : identityOf(source.path)).second;
  });
  return sources;
}

}  // namespace Ombe
