#ifndef PROMISE_H
#define PROMISE_H

/// Ends the run, and so makes the input a finding, when a promise of the code under test is not kept.
/// @a promise says what was promised, for whoever reads the report.
void require(bool kept, const char *promise);

#endif
