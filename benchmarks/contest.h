#pragma once

#include <functional>
#include <string>

/// One operation of this client beside a peer, who does the same with another library.
///
/// Both run in turn in one program, so that a busy machine slows both alike; each is timed by the processor time of the
/// whole process, and what counts is the quickest round of each. Compare the results before you add a contest.
struct Contest
{
    std::string operation; ///< as the table names it
    std::string peer;      ///< the library, or the libraries
    double units = 1;      ///< pixels or bytes that one call works on
    std::function<void()> ours;
    std::function<void()> theirs;
    std::function<void()> prepare = {}; ///< before each of ours, not timed: a fresh picture for what works in place
};

void addContest(const Contest& contest);

/// Runs what was added, as Google Benchmark's flags on the command line ask, and prints a line for each: nanoseconds a
/// unit of ours and of the peer, and the ratio of the two (below 1: faster than the peer).
/// @return the exit code of the program
int runContests(int argc, char** argv);
