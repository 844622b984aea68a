// What the core imports from the page; engine.js puts its own in their place.
mergeInto(LibraryManager.library, {
  PageTell: function () {},
  PageAsk: function () {},
});
