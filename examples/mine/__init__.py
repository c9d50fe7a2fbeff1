"""A made-up coal mine: what the example drawing is drawn from."""
