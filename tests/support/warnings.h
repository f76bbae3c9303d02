#ifndef WARNINGS_H
#define WARNINGS_H

/// Makes the running test fail when Qt warns of anything but the two style sheets that are meant to be as
/// they are, the colour buttons' with their lone closing brace and the about label's, and of what the
/// offscreen platform cannot do: size limits of windows, raising them, grabbing the keyboard for a list that
/// opens. Call it from init().
void failOnUnexpectedWarnings();

#endif
