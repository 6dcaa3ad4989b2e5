#pragma once

// What is not marked so stays inside its library: both libraries are compiled with hidden visibility.
#define DATASERIES_API __attribute__((visibility("default")))
