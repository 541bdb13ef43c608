#pragma once
// What a screen reader is told of the window's controls. The game's steps
// stay as they are: the labels report their own changes, and the names and
// descriptions follow from those reports.
class Window1;

// Names every control and keeps the changing ones described from then on.
// Called once the controls exist, before the window opens.
void DescribeControls(Window1& window);
