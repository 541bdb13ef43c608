#pragma once

// The application object. Empty by design: it binds no event, so every
// failure takes the toolkit's one route and nothing is silenced.
class App {
 public:
  App() = default;
};
