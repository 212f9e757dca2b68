// Marks what libombe_core exports; everything else in the tree is built with hidden visibility.
#pragma once

#define OMBE_API __attribute__((visibility("default")))
