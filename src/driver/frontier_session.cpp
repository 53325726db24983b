#include "driver/frontier_session.h"

#include <algorithm>
#include <iterator>

#include "core/text.h"
#include "driver/end_of.h"
#include "driver/frontier_files.h"
#include "driver/report_inputs.h"
#include "driver/sheet_file.h"
#include "system/threads.h"

namespace qob {
namespace {

std::string file_name(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

}  // namespace

FrontierSession::FrontierSession(const FrontierArguments& arguments)
    : parameter_file_(arguments.parameter_file),
      jobs_(arguments.jobs > 0 ? arguments.jobs : processors()),
      given_(read_parameters(parameter_file_)),
      folders_(arguments.output, given_) {
  out_.open_standard_output();
  err_.open_standard_error();
  read_herd_once(arguments.quiet);
}

// Its own goal is among the points whatever they are, and its folder the first that there is.
void FrontierSession::read_herd_once(bool quiet) {
  const PointRun own = direct_run(own_point(given_.groups.ocs), given_);
  if (!folders_.is_finished(own)) folders_.prepare(own);
  ToldRun told;
  told.run.parallel = Parallel(jobs_);
  told.run.files.folder = folders_.path(own);
  const End end = end_of([&] { read_herd(told.run, kRunParameters, herd_); });
  if (end.status != kSuccess) {
    const std::string words = told.last_words();
    refuse(parameter_file_, (words.empty() ? end.text : words) + " : qob " +
                                printable(parameter_file_) + " tells more in qob.log");
  }
  if (!quiet && !told.err.empty()) tell(told.err.substr(0, told.err.size() - 1));
  possible_ = std::make_unique<Possible>(herd_.selection, herd_.relationship, herd_.pedigree);
  if (!possible_->is_any())
    refuse(parameter_file_,
           "the males have no room for all matings in whole units of limitmalematings");
}

void FrontierSession::add(const FrontierArguments& arguments) {
  std::vector<Point> points = other_points(arguments, given_.groups.ocs, &possible_->curve());
  points.insert(points.begin(), own_point(given_.groups.ocs));
  for (const Point& point : points) {
    add(direct_run(point, given_));
    for (std::int32_t seed = 1; arguments.search && seed <= arguments.seeds; ++seed)
      add(searched_run(point, given_, seed));
  }
}

void FrontierSession::add(const PointRun& run) {
  const auto same = [&](const PointRun& known) { return known.folder == run.folder; };
  if (std::none_of(runs_.begin(), runs_.end(), same)) runs_.push_back(run);
}

void FrontierSession::make(const std::vector<PointRun>& runs) {
  for (const PointRun& run : runs) folders_.prepare(run);
  for (const std::string& fault : run_all(folders_, herd_, runs, jobs_, out_)) tell(fault);
}

Frontier FrontierSession::collected() {
  std::vector<PointRun> finished;
  std::copy_if(runs_.begin(), runs_.end(), std::back_inserter(finished),
               [&](const PointRun& run) { return is_finished(run); });
  return collect(herd_, *possible_, folders_, finished);
}

std::string FrontierSession::json_of_frontier(const Frontier& frontier) const {
  const std::string data(adjustl_trim(given_.groups.data.datafile));
  const std::string names_file = prepared_file(data, ".names.csv");
  Names names;
  if (!names_file.empty()) read_names(names_file, names);
  const auto name = [&](std::int32_t id) {
    std::string text(names.identifier(id));
    const std::string_view called = names.name(id);
    return called.empty() ? text : text.append(text.empty() ? "" : " ").append(called);
  };
  const std::string file = file_name(data);
  return json_of(
      frontier, herd_.selection,
      {std::string("qob-frontier ") + QOB_VERSION, time_now(), file_name(parameter_file_), file,
       file.substr(0, file.size() - (file.ends_with(".dat") ? 4 : 0)), name,
       last_birth_time(herd_.pedigree.btime)});
}

}  // namespace qob
